#pragma once

#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>
#include <utility>
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

/// Plays a capture while it lives: each buffer gets frames of six samples, which rise by one from sample to sample.
class CaptureThread {
public:
    explicit CaptureThread(std::vector<avb::AvbAudioBuffer *> buffers)
        : thread([this, targets = std::move(buffers)] {
              for (float next = 1; !ended; next += 6) {
                  for (avb::AvbAudioBuffer *buffer : targets) {
                      buffer->writeSamples(ramp(next, 6).data(), 6);
                  }
                  std::this_thread::sleep_for(std::chrono::microseconds(125));
              }
          }) {}
    ~CaptureThread() {
        ended = true;
        thread.join();
    }
    CaptureThread(const CaptureThread &) = delete;
    CaptureThread &operator=(const CaptureThread &) = delete;

private:
    std::atomic<bool> ended{false};
    std::thread thread;
};

} // namespace support
