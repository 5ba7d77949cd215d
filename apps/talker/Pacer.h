#pragma once

#include <atomic>
#include <chrono>

namespace talker {

/// Waits for moments counted from its construction. They lie on the clock's own line, so that nothing drifts: who comes
/// late does not wait, and so catches up.
class Pacer {
public:
    using Duration = std::chrono::nanoseconds;

    Pacer();

    /// @return false if stop is set, which it may be by a handler of a signal that arrives meanwhile
    bool waitUntil(Duration moment, const std::atomic<bool> &stop) const;

    /// The time since construction.
    Duration elapsed() const;

private:
    Duration start;
};

} // namespace talker
