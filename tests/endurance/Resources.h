#pragma once

#include <cstddef>

namespace endurance {

/// What this process holds at a moment, as the system tells it.
struct Resources {
    std::size_t residentBytes;
    std::size_t heapBytes; ///< in use, of what the allocator has
    int threads;
    int descriptors;

    static Resources now();
};

} // namespace endurance
