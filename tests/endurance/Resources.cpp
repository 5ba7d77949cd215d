#include "endurance/Resources.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <malloc.h>
#include <unistd.h>

namespace endurance {

namespace {

int entriesOf(const char *folder) {
    int entries = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(folder)) {
        ++entries;
    }
    return entries;
}

/// Qt waits for a thread's work, not for its last instructions: what has ended may be listed for a moment.
int threadsThatStay() {
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    int threads = entriesOf("/proc/self/task");
    while (threads > 1 && std::chrono::steady_clock::now() < patience) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        threads = entriesOf("/proc/self/task");
    }
    return threads;
}

} // namespace

Resources Resources::afterRun() {
    const int threads = threadsThatStay();
    malloc_trim(0); // what the allocator keeps for later depends on how busy the machine was
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    const struct mallinfo2 heap = mallinfo2();
    return {pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), heap.uordblks + heap.hblkhd, threads,
            entriesOf("/proc/self/fd") - 1};
}

} // namespace endurance
