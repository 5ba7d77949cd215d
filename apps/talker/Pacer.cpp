#include "talker/Pacer.h"

#include <cerrno>
#include <ctime>

#include <sys/prctl.h>

namespace talker {

namespace {

constexpr Pacer::Duration::rep nanosecondsPerSecond = 1'000'000'000;

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
    const Duration::rep deadline = (start + moment).count();
    const timespec time = {deadline / nanosecondsPerSecond, deadline % nanosecondsPerSecond};
    int result = EINTR;
    while (!stop && result == EINTR) {
        result = clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
    }
    return !stop;
}

Pacer::Duration Pacer::elapsed() const {
    return monotonicNow() - start;
}

} // namespace talker
