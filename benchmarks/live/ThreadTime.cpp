#include "live/ThreadTime.h"

#include <cerrno>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>

namespace live {

namespace {

std::set<pid_t> threads() {
    std::set<pid_t> all;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/task")) {
        all.insert(std::stoi(entry.path().filename()));
    }
    return all;
}

} // namespace

ThreadTime::ThreadTime(const std::function<void()> &start) {
    const std::set<pid_t> before = threads();
    start();
    int begun = 0;
    for (const pid_t candidate : threads()) {
        if (before.count(candidate) == 0) {
            thread = candidate;
            ++begun;
        }
    }
    if (begun != 1) {
        throw std::logic_error("no capture has begun, or more than its thread");
    }
}

double ThreadTime::nanoseconds() const {
    // As pthread_getcpuclockid makes it, which only knows threads by the handle that their creator has.
    constexpr unsigned scheduledTimeOfThread = 6;
    const auto clock = static_cast<clockid_t>(~static_cast<unsigned>(thread) << 3 | scheduledTimeOfThread);
    timespec time = {};
    if (clock_gettime(clock, &time) != 0) {
        throw std::system_error(errno, std::generic_category(), "the CPU time of a thread");
    }
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double ThreadTime::waitedMilliseconds() const {
    double run = 0;
    double waited = 0;
    std::ifstream("/proc/self/task/" + std::to_string(thread) + "/schedstat") >> run >> waited;
    return waited * 1e-6;
}

} // namespace live
