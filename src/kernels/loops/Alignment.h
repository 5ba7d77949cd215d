#pragma once

#include <stddef.h>
#include <stdint.h>

#include "kernels/Types.h"
#include "kernels/loops/Vector.h"

namespace kernels::KERNEL_LEVEL {

/// The first address at or behind memory that is a multiple of the alignment.
SONVEX_INLINE Ipp8u *alignUp(Ipp8u *memory, size_t alignment) {
    return memory + (alignment - reinterpret_cast<uintptr_t>(memory) % alignment) % alignment;
}

static constexpr size_t alignUp(size_t size, size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace kernels::KERNEL_LEVEL
