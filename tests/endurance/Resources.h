#pragma once

#include <cstddef>

namespace endurance {

/// What this process holds, as the system tells it.
struct Resources {
    std::size_t residentBytes;
    std::size_t heapBytes; ///< in use, of what the allocator has
    int threads;
    int descriptors;

    /// Waits for threads that have done their work, up to 10 s.
    static Resources afterRun();
};

} // namespace endurance
