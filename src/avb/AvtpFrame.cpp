#include "avb/AvtpFrame.h"

#include <algorithm>

namespace avb {

AvtpFrame::AvtpFrame(const std::uint8_t *bytes, std::uint32_t wireLength, std::uint32_t capturedLength,
                     std::int64_t captureTime)
    : bytes(bytes), headerLength(bytes == nullptr ? 0 : std::min(wireLength, capturedLength)),
      capturedLength(bytes == nullptr ? 0 : capturedLength), time(captureTime) {}

bool AvtpFrame::isFrom(const MacAddress &source) const {
    return holds(sourceMacOffset, 6) && std::equal(source.begin(), source.end(), bytes + sourceMacOffset);
}

std::uint16_t AvtpFrame::dataLength() const {
    if (!holds(dataLengthOffset, 2)) {
        return 0;
    }
    return static_cast<std::uint16_t>((bytes[dataLengthOffset] << 8) | bytes[dataLengthOffset + 1]);
}

const std::uint8_t *AvtpFrame::samples(std::uint64_t amount) const {
    const bool captured = capturedLength >= samplesOffset && capturedLength - samplesOffset >= amount;
    return captured ? bytes + samplesOffset : nullptr;
}

} // namespace avb
