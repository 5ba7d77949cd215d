#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/MacAddress.h"
#include "talker/FrameFormat.h"
#include "talker/encodeSample.h"

namespace talker {

/**
 * One Ethernet frame of an AVTP audio stream: subtype AAF, the samples of all channels side by side, in network byte
 * order. Always complete; the setters change it in place and allocate nothing.
 */
class AafFrame {
public:
    static constexpr std::size_t ethernetHeaderSize = 14;
    static constexpr std::size_t headerSize = ethernetHeaderSize + 24; ///< up to the first sample

    /// The stream ID is the source address with the unique ID 0.
    AafFrame(const common::MacAddress &source, const common::MacAddress &destination, const FrameFormat &format);
    /// 48 kHz and 16-bit integers.
    AafFrame(const common::MacAddress &source, const common::MacAddress &destination, unsigned channels,
             unsigned samplesPerChannel)
        : AafFrame(source, destination, FrameFormat{channels, samplesPerChannel}) {}

    /// Declares the format and the data length that belongs to it. The samples are undefined until they are set.
    /// @throws std::out_of_range for a format that no frame can declare
    void setFormat(const FrameFormat &newFormat);
    void setSequence(std::uint8_t sequence) { bytes[16] = sequence; }
    /// @param timestamp presentation time of the first sample in ns, modulo 2^32
    void setTimestamp(std::uint32_t timestamp);
    /// Declares a data length that may be false; the size of the frame stays.
    void setDataLength(std::uint16_t length) { write16(34, length); }
    /// @param value full scale is 1.0
    /// @pre sample and channel are within the format
    void setSample(unsigned sample, unsigned channel, double value) {
        std::uint32_t code = encodeSample(format.sample, value);
        const std::size_t position = std::size_t{sample} * format.channels + channel;
        for (std::size_t end = headerSize + (position + 1) * format.sample.bytes, i = 1; i <= format.sample.bytes;
             ++i) {
            bytes[end - i] = static_cast<std::uint8_t>(code);
            code >>= 8;
        }
    }

    const FrameFormat &getFormat() const { return format; }
    const std::uint8_t *data() const { return bytes.data(); }
    std::size_t size() const { return headerSize + format.dataLength(); }

private:
    void write16(std::size_t offset, std::uint16_t value) {
        bytes[offset] = static_cast<std::uint8_t>(value >> 8);
        bytes[offset + 1] = static_cast<std::uint8_t>(value);
    }

    std::array<std::uint8_t, headerSize + FrameFormat::maxDataLength> bytes = {};
    FrameFormat format;
};

} // namespace talker
