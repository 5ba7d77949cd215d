#pragma once

#include <chrono>
#include <cstdint>

namespace talker {

/// The moment of a sample after the first one, exact to the nanosecond as far as nanoseconds count, 292 years. Whole
/// seconds first: nothing overflows, and nothing adds up, whatever the rate.
constexpr std::chrono::nanoseconds sampleTime(std::uint64_t sample, unsigned rate) {
    return std::chrono::nanoseconds(sample / rate * 1'000'000'000 + sample % rate * 1'000'000'000 / rate);
}

} // namespace talker
