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
    const auto fullScale = static_cast<double>(std::uint64_t{1} << (8 * format.bytes - 1));
    return static_cast<std::uint32_t>(std::llround(std::clamp(value * fullScale, -fullScale, fullScale - 1.0)));
}

} // namespace talker
