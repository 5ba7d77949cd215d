#pragma once

#include <vector>

#include "kernels/SoundLevelLaw.h"

namespace support {

/**
 * The law of the sound levels at 48 kHz, value by value in one pass and one thread, in the order of a result's values:
 * what the library's results are held to, and what benchmarks compare its time with.
 */
class SoundLevelModel {
public:
    SoundLevelModel();

    /// The highest levels behind any of the samples, in dB. Runs on from call to call.
    std::vector<double> measure(const std::vector<float> &samples);

private:
    CascadeLaw<double> weightings[3];
    AverageLaw<double> averages[6];
};

} // namespace support
