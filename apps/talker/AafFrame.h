#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/MacAddress.h"

namespace talker {

/**
 * One Ethernet frame of an AVTP audio stream: subtype AAF, 48 kHz, 16-bit integers in network byte order, the samples
 * of all channels side by side. Always complete; the setters change it in place and allocate nothing.
 */
class AafFrame {
public:
    static constexpr std::size_t ethernetHeaderSize = 14;
    static constexpr std::size_t headerSize = ethernetHeaderSize + 24; ///< up to the first sample
    static constexpr std::size_t maxDataLength = 65535;
    static constexpr unsigned maxChannels = 1023;
    static constexpr unsigned maxSamplesPerChannel = maxDataLength / 2;

    /// Bytes of the samples in a frame.
    static constexpr std::size_t dataLength(unsigned channels, unsigned samplesPerChannel) {
        return std::size_t{2} * channels * samplesPerChannel;
    }

    /// The stream ID is the source address with the unique ID 0.
    AafFrame(const common::MacAddress &source, const common::MacAddress &destination, unsigned channels,
             unsigned samplesPerChannel);

    /// Declares the format and the data length that belongs to it. The samples are undefined until they are set.
    /// @throws std::out_of_range for a format that no frame can declare
    void setFormat(unsigned channels, unsigned samplesPerChannel);
    void setSequence(std::uint8_t sequence) { bytes[16] = sequence; }
    /// @param timestamp presentation time of the first sample in ns, modulo 2^32
    void setTimestamp(std::uint32_t timestamp);
    /// Declares a data length that may be false; the size of the frame stays.
    void setDataLength(std::uint16_t length) { write16(34, length); }
    /// @pre sample and channel are within the format
    void setSample(unsigned sample, unsigned channel, std::int16_t code) {
        write16(headerSize + dataLength(channels, sample) + std::size_t{2} * channel, static_cast<std::uint16_t>(code));
    }

    unsigned getChannels() const { return channels; }
    unsigned getSamplesPerChannel() const { return samplesPerChannel; }
    const std::uint8_t *data() const { return bytes.data(); }
    std::size_t size() const { return headerSize + dataLength(channels, samplesPerChannel); }

private:
    void write16(std::size_t offset, std::uint16_t value) {
        bytes[offset] = static_cast<std::uint8_t>(value >> 8);
        bytes[offset + 1] = static_cast<std::uint8_t>(value);
    }

    std::array<std::uint8_t, headerSize + maxDataLength> bytes = {};
    unsigned channels = 0;
    unsigned samplesPerChannel = 0;
};

} // namespace talker
