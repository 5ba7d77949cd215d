#pragma once

#include <atomic>
#include <thread>

namespace threading {

/**
 * Mutual exclusion for a few hundred nanoseconds at a time, for std::lock_guard. Leaving it is a plain store, where a
 * mutex would first wait until all that was written inside has reached the caches. Who finds it taken gives the
 * processor away until it is free: for sections without a call to the system, and for threads that rarely meet.
 */
class BriefLock {
public:
    void lock() {
        while (taken.exchange(true, std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    void unlock() { taken.store(false, std::memory_order_release); }

private:
    std::atomic<bool> taken{false};
};

} // namespace threading
