#pragma once

#include "discovery/WireStream.h"

namespace discovery {

/// Decides whether a stream can be monitored and with which option, or why not.
/// @param sharesSource with another stream
void judge(WireStream &stream, bool sharesSource);

} // namespace discovery
