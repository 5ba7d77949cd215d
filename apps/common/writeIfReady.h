#pragma once

#include <string_view>

#include <sys/types.h>

namespace common {

/// Writes at most so much at once as a reader that takes anything takes whole, and never waits for that reader.
/// @return as ::write; -1 with EAGAIN if nothing is taken now
ssize_t writeIfReady(int descriptor, std::string_view text);

} // namespace common
