#pragma once

#include <chrono>
#include <cstdint>

namespace avb {

/**
 * The steady time of captured frames, for next to nothing: a clock is read once in ten milliseconds of the
 * capture's own stamps, and once in 32 frames, for those that wait while the capture stalls. One thread at a time.
 */
class ArrivalClock {
public:
    /// Nanoseconds of std::chrono::steady_clock. @param captureTime microseconds, which may also go back
    std::int64_t steadyTime(std::int64_t captureTime) {
        if (framesUntilNext == 0 || captureTime >= latestCapture + resolution || captureTime < latestCapture) {
            framesUntilNext = longestUse;
            latest = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
            latestCapture = captureTime;
        }
        --framesUntilNext;
        return latest;
    }

private:
    static constexpr std::int64_t resolution = 10'000; // microseconds

    static constexpr unsigned longestUse = 32; // frames

    unsigned framesUntilNext = 0;
    std::int64_t latestCapture = 0;
    std::int64_t latest = 0;
};

} // namespace avb
