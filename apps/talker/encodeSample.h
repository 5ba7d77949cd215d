#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "common/AafFormat.h"

namespace talker {

inline constexpr std::uint8_t floatCode = 1;

/// The bits of a sample. An integer of n bits has its full scale at 2^(n - 1): a value is rounded to the nearest code,
/// and clipped. Floating point is the nearest float, also beyond full scale, as other senders don't clip it either.
inline std::uint32_t encodeSample(const common::AafFormat &format, double value) {
    if (format.code == floatCode) {
        const auto nearest = static_cast<float>(value);
        std::uint32_t bits = 0;
        std::memcpy(&bits, &nearest, sizeof(bits));
        return bits;
    }
    const double fullScale = format.bytes == 2 ? 32768.0 : format.bytes == 3 ? 8388608.0 : 2147483648.0;
    return static_cast<std::uint32_t>(std::llround(std::clamp(value * fullScale, -fullScale, fullScale - 1.0)));
}

} // namespace talker
