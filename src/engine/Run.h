#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <utility>

namespace engine {

/**
 * What a host does from the first thing that it adds up to ISonvex::destroy. The one place that says that this is over:
 * the facade ends a run, and every handle that the run gave out asks here. Any thread may ask.
 */
class Run {
public:
    /// @param beforeStart called on the caller's thread before each start of a capture or a processor
    explicit Run(std::function<void()> beforeStart = [] {}) : beforeStart(std::move(beforeStart)) {}

    bool isOver() const { return over; }
    void end() { over = true; }

    /// Whether the run is over; then with a warning.
    /// @param name of what was asked for something, @param refused says what does not happen
    bool refuses(const char *context, const std::string &name, const char *refused) const;
    /// The same question for a start, which is on its way if it is not refused.
    bool refusesStart(const char *context, const std::string &name, const char *refused) const;

private:
    std::function<void()> beforeStart;
    std::atomic<bool> over{false};
};

} // namespace engine
