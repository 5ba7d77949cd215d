#pragma once

#include <numeric>
#include <thread>
#include <vector>

#include "avb/AvbAudioBuffer.h"

namespace support {

inline std::vector<float> ramp(float first, std::size_t amount) {
    std::vector<float> values(amount);
    std::iota(values.begin(), values.end(), first);
    return values;
}

/// Writes on a thread of its own, as a capture does; returns when the samples are in the buffer.
inline void capture(avb::AvbAudioBuffer &buffer, const std::vector<float> &samples) {
    std::thread([&] { buffer.writeSamples(samples.data(), samples.size()); }).join();
}

} // namespace support
