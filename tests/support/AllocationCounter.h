#pragma once

#include <cstddef>

namespace support {

/// How often this thread has allocated with new so far.
std::size_t allocationsOfThisThread();

} // namespace support
