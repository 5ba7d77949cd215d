#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace live {

/// Keeps each core busy that this process may use, with one thread of normal priority on each.
class BusyLoops {
public:
    BusyLoops();
    ~BusyLoops();
    BusyLoops(const BusyLoops &) = delete;
    BusyLoops &operator=(const BusyLoops &) = delete;

private:
    std::atomic<bool> ended{false};
    std::vector<std::thread> threads;
};

} // namespace live
