#pragma once

#include <functional>

namespace support {

/// Runs the event loop until @p condition holds. @return false if it does not within 20 s
bool waitFor(const std::function<bool()> &condition);

/// Runs what is queued for this thread right now.
void deliverQueued();

} // namespace support
