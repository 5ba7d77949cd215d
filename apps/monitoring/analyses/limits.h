#pragma once

#include <string>

namespace monitoring {

/// Samples of a result that a command line may ask for.
constexpr unsigned maximumAmount = 1U << 24U;

/// The beginning of what a short buffer has as a consequence.
inline std::string bufferLimit(unsigned bufferSize) {
    return "the buffer holds " + std::to_string(bufferSize) + " samples, so ";
}

} // namespace monitoring
