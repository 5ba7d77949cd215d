#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <endian.h>

namespace avb {

/**
 * The one bounds-checked view of a captured frame: an untagged Ethernet header, the IEEE 1722 AVTP Audio Format header
 * and the samples. It reads nothing past the captured bytes, whatever the frame or its length on the wire claims.
 * Valid as long as the capture's bytes.
 */
class AvtpFrame {
public:
    /// Offsets of the fields from the first byte of the Ethernet header.
    enum Offset : std::uint32_t {
        sourceMacOffset = 6,
        subtypeOffset = 14,
        flagsOffset = 15, ///< of the stream ID and the time stamp
        sequenceNumberOffset = 16,
        uncertainOffset = 17,
        streamIdOffset = 18,
        timestampOffset = 26,
        formatOffset = 30,
        sampleRateOffset = 31, ///< in its upper half; the two lowest bits are the upper ones of the channel amount
        channelAmountOffset = 32,
        bitDepthOffset = 33,
        dataLengthOffset = 34,
        samplesOffset = 38
    };

    /// A null @p bytes counts as a frame of length 0.
    /// @param captureTime microseconds since 1970
    AvtpFrame(const std::uint8_t *bytes, std::uint32_t wireLength, std::uint32_t capturedLength,
              std::int64_t captureTime = 0)
        : bytes(bytes), headerLength(bytes == nullptr ? 0 : std::min(wireLength, capturedLength)),
          capturedLength(bytes == nullptr ? 0 : capturedLength), time(captureTime) {}

    std::int64_t captureTime() const { return time; }

    /// The bytes that count for the header: those that were on the wire and were captured.
    std::uint32_t length() const { return headerLength; }

    bool holds(Offset field, std::uint32_t size) const { return headerLength >= field + size; }

    /// The byte at the offset, or 0 where the frame is too short: ask holds() where that matters. So for all fields.
    std::uint8_t byteAt(Offset field) const { return holds(field, 1) ? bytes[field] : std::uint8_t{0}; }
    std::uint16_t dataLength() const { return be16toh(load<std::uint16_t>(dataLengthOffset)); }
    /// In ns, modulo 2^32.
    std::uint32_t timestamp() const { return be32toh(load<std::uint32_t>(timestampOffset)); }
    /// All that a frame declares of its samples, from the format to their length, as a number to be compared. Only of a
    /// frame that holds the length.
    std::uint64_t declaration() const { return identityOf<6>(bytes + formatOffset); }
    /// These two are to be compared, as identityOf() makes them.
    std::uint64_t source() const { return holds(sourceMacOffset, 6) ? identityOf<6>(bytes + sourceMacOffset) : 0; }
    std::uint64_t streamId() const { return holds(streamIdOffset, 8) ? identityOf<8>(bytes + streamIdOffset) : 0; }

    /// An address or a stream ID as a number, whatever its value is.
    template <std::size_t size>
    static std::uint64_t identityOf(const std::uint8_t *bytes) {
        static_assert(size == 6 || size == 8);
        std::uint32_t front = 0;
        std::conditional_t<size == 6, std::uint16_t, std::uint32_t> rest = 0; // not by way of memory: that is slow
        std::memcpy(&front, bytes, sizeof front);
        std::memcpy(&rest, bytes + sizeof front, sizeof rest);
        return static_cast<std::uint64_t>(size == 6 ? le16toh(static_cast<std::uint16_t>(rest)) : le32toh(rest)) << 32 |
               le32toh(front);
    }

    bool hasValidStreamId() const { return holds(streamIdOffset, 8) && (bytes[flagsOffset] & 0x80U) != 0; }
    bool hasValidTimestamp() const { return holds(timestampOffset, 4) && (bytes[flagsOffset] & 0x01U) != 0; }
    bool isTimestampUncertain() const { return (byteAt(uncertainOffset) & 0x01U) != 0; }
    /// Changes with each restart of the media clock.
    bool mediaClockRestart() const { return (byteAt(flagsOffset) & 0x08U) != 0; }

    /// The samples, or null if fewer than @p amount bytes of them were captured.
    const std::uint8_t *samples(std::uint64_t amount) const {
        const bool captured = capturedLength >= samplesOffset && capturedLength - samplesOffset >= amount;
        return captured ? bytes + samplesOffset : nullptr;
    }

private:
    /// In the order of the frame.
    template <class Number>
    Number load(Offset field) const {
        Number value = 0;
        if (holds(field, sizeof value)) {
            std::memcpy(&value, bytes + field, sizeof value);
        }
        return value;
    }

    const std::uint8_t *bytes;
    std::uint32_t headerLength;
    std::uint32_t capturedLength;
    std::int64_t time;
};

} // namespace avb
