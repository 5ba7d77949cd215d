#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

} // namespace

void *operator new(std::size_t size) {
    ++allocations;
    if (void *memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace support {

std::size_t allocationsOfThisThread() {
    return allocations;
}

} // namespace support
