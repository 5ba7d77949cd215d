#include "live/BusyLoops.h"

#include <pthread.h>
#include <sched.h>

namespace live {

BusyLoops::BusyLoops() {
    cpu_set_t usable;
    sched_getaffinity(0, sizeof usable, &usable);
    for (int core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(core, &usable)) {
            threads.emplace_back([this] {
                while (!ended.load(std::memory_order_relaxed)) {
                }
            });
            cpu_set_t one;
            CPU_ZERO(&one);
            CPU_SET(core, &one);
            pthread_setaffinity_np(threads.back().native_handle(), sizeof one, &one);
        }
    }
}

BusyLoops::~BusyLoops() {
    ended = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
}

} // namespace live
