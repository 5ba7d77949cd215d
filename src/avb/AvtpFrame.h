#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace avb {

/**
 * The one bounds-checked view of a captured frame: an untagged Ethernet header, the IEEE 1722 AVTP Audio Format header
 * and the samples. It reads nothing past the captured bytes, whatever the frame or its length on the wire claims.
 * Valid as long as the capture's bytes.
 */
class AvtpFrame {
public:
    using MacAddress = std::array<std::uint8_t, 6>;

    /// Offsets of the fields from the first byte of the Ethernet header.
    enum Offset : std::uint32_t {
        sourceMacOffset = 6,
        subtypeOffset = 14,
        sequenceNumberOffset = 16,
        formatOffset = 30,
        channelAmountOffset = 32,
        dataLengthOffset = 34,
        samplesOffset = 38
    };

    /// A null @p bytes counts as a frame of length 0.
    /// @param captureTime microseconds since 1970
    AvtpFrame(const std::uint8_t *bytes, std::uint32_t wireLength, std::uint32_t capturedLength,
              std::int64_t captureTime = 0);

    std::int64_t captureTime() const { return time; }

    /// The bytes that count for the header: those that were on the wire and were captured.
    std::uint32_t length() const { return headerLength; }

    bool holds(Offset field, std::uint32_t size) const { return headerLength >= field + size; }
    bool isFrom(const MacAddress &source) const;

    /// The byte at the offset, or 0 where the frame is too short: ask holds() where that matters.
    std::uint8_t byteAt(Offset field) const { return holds(field, 1) ? bytes[field] : std::uint8_t{0}; }
    /// Big-endian, or 0 where the frame is too short.
    std::uint16_t dataLength() const;

    /// The samples, or null if fewer than @p amount bytes of them were captured.
    const std::uint8_t *samples(std::uint64_t amount) const;

private:
    const std::uint8_t *bytes;
    std::uint32_t headerLength;
    std::uint32_t capturedLength;
    std::int64_t time;
};

} // namespace avb
