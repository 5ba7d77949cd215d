#pragma once

#include <functional>

namespace common {

/// Runs a program's work and gives its exit status. What stops the work is said in one line, never in a stack trace.
int runProgram(const std::function<int()> &work);

} // namespace common
