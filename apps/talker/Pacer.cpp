#include "talker/Pacer.h"

#include <algorithm>
#include <ctime>

#include <sys/prctl.h>

namespace talker {

namespace {

constexpr Pacer::Duration::rep nanosecondsPerSecond = 1'000'000'000;
constexpr Pacer::Duration longestPart = std::chrono::milliseconds(100);

Pacer::Duration monotonicNow() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::chrono::seconds(now.tv_sec) + Pacer::Duration(now.tv_nsec);
}

} // namespace

Pacer::Pacer() : start(monotonicNow()) {
    // By default the kernel may add 50 microseconds to every wait of a thread.
    prctl(PR_SET_TIMERSLACK, 1UL);
}

bool Pacer::waitUntil(Duration moment, const std::atomic<bool> &stop) const {
    // In parts, as a signal that arrives just before the system's call does not interrupt it.
    for (Duration now = elapsed(); !stop && now < moment; now = elapsed()) {
        const Duration::rep deadline = (start + std::min(moment, now + longestPart)).count();
        const timespec time = {deadline / nanosecondsPerSecond, deadline % nanosecondsPerSecond};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
    }
    return !stop;
}

Pacer::Duration Pacer::elapsed() const {
    return monotonicNow() - start;
}

} // namespace talker
