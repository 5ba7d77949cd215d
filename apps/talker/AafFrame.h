#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/MacAddress.h"
#include "common/StreamId.h"
#include "talker/FrameFormat.h"
#include "talker/VlanTag.h"
#include "talker/encodeSample.h"

namespace talker {

/**
 * One Ethernet frame of an AVTP audio stream: subtype AAF, the samples of all channels side by side, in network byte
 * order. Always complete; the setters change it in place and allocate nothing.
 */
class AafFrame {
public:
    static constexpr std::size_t ethernetHeaderSize = 14;
    static constexpr std::size_t headerSize = ethernetHeaderSize + 24; ///< up to the first sample, without a tag

    /// Without a tag; the stream ID is the source address with the unique ID 0.
    AafFrame(const common::MacAddress &source, const common::MacAddress &destination, const FrameFormat &format);
    /// 48 kHz and 16-bit integers.
    AafFrame(const common::MacAddress &source, const common::MacAddress &destination, unsigned channels,
             unsigned samplesPerChannel)
        : AafFrame(source, destination, FrameFormat{channels, samplesPerChannel}) {}

    /// @pre there is none yet
    void setTag(const VlanTag &tag);
    void setStreamId(const common::StreamId &id);
    /// Declares the format and the data length that belongs to it. The samples are undefined until they are set.
    /// @throws std::out_of_range for a format that no frame can declare
    void setFormat(const FrameFormat &newFormat);
    void setSequence(std::uint8_t sequence) { bytes[pdu + 2] = sequence; }
    /// @param timestamp presentation time of the first sample in ns, modulo 2^32
    void setTimestamp(std::uint32_t timestamp);
    /// Declares a data length that may be false; the size of the frame stays.
    void setDataLength(std::uint16_t length) { write16(pdu + 20, length); }
    void setStreamValid(bool valid) { setBit(pdu + 1, 0x80, valid); }
    void setTimestampValid(bool valid) { setBit(pdu + 1, 0x01, valid); }
    void setTimestampUncertain(bool uncertain) { setBit(pdu + 3, 0x01, uncertain); }
    /// Says that the media clock has started anew, as its bit has another value than before.
    void toggleClockRestart() { bytes[pdu + 1] ^= 0x08; }
    /// @param value full scale is 1.0
    /// @pre sample and channel are within the format
    void setSample(unsigned sample, unsigned channel, double value) {
        std::uint32_t code = encodeSample(format.sample, value);
        const std::size_t end =
            samples + (std::size_t{sample} * format.channels + channel + 1) * std::size_t{format.sample.bytes};
        for (std::size_t i = 1; i <= format.sample.bytes; ++i) {
            bytes[end - i] = static_cast<std::uint8_t>(code);
            code >>= 8;
        }
    }

    const FrameFormat &getFormat() const { return format; }
    const std::uint8_t *data() const { return bytes.data() + (tagged ? 0 : VlanTag::size); }
    std::size_t size() const { return sizeOf(format, tagged); }
    static std::size_t sizeOf(const FrameFormat &format, bool tagged) {
        return headerSize + format.dataLength() + (tagged ? VlanTag::size : 0);
    }

private:
    // There is always room for a tag, so that what follows it has its place. Frames without one begin behind the room.
    static constexpr std::size_t pdu = VlanTag::size + ethernetHeaderSize;
    static constexpr std::size_t samples = VlanTag::size + headerSize;

    void setBit(std::size_t offset, std::uint8_t mask, bool value) {
        bytes[offset] = static_cast<std::uint8_t>(value ? bytes[offset] | mask : bytes[offset] & ~mask);
    }
    void write16(std::size_t offset, std::uint16_t value) {
        bytes[offset] = static_cast<std::uint8_t>(value >> 8);
        bytes[offset + 1] = static_cast<std::uint8_t>(value);
    }

    std::array<std::uint8_t, samples + FrameFormat::maxDataLength> bytes = {};
    FrameFormat format;
    bool tagged = false;
};

} // namespace talker
