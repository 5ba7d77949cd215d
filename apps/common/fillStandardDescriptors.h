#pragma once

namespace common {

/// Keeps what the process opens away from the places of the standard input and outputs, should they be closed. Using
/// them still fails then. Safe to call before any constructor of the process has run.
void fillStandardDescriptors();

} // namespace common
