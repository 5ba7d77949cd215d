#pragma once

#include <array>
#include <vector>

/// The sound levels of a channel value by value, in one pass and one thread: what a plain implementation does.
class LevelLaw {
public:
    using Levels = std::array<double, 7>;

    /// The highest levels behind any of the samples, in dB. Runs on from call to call.
    Levels measure(const std::vector<float> &samples);

private:
    std::array<double, 6> delaysA{};
    std::array<double, 4> delaysC{};
    std::array<double, 6> averages{};
};
