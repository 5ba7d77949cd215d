#pragma once

#include <cstdint>

namespace endurance {

/// The frames that the kernel says it dropped for want of space, of all captures of this process that have been closed.
std::uint64_t kernelDrops();

} // namespace endurance
