#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace analyser {

/// How far the run's end is, for those who wait for a reader. All but setDeadline() on any thread.
class Ending {
public:
    using Clock = std::chrono::steady_clock;

    /// @param isAskedFor whether the user wants the program to end; may be empty
    explicit Ending(std::function<bool()> isAskedFor = {}) : isAskedFor(std::move(isAskedFor)) {}

    /// When it begins by itself. Before other threads ask.
    void setDeadline(Clock::time_point moment) { deadline = moment; }
    void begin() { begun = true; }

    /// From then on a reader that takes nothing is given up.
    bool hasBegun() const { return begun || isUrgent() || (deadline && Clock::now() >= *deadline); }
    /// The user waits: from then on a reader that is slow is given up, too.
    bool isUrgent() const { return isAskedFor && isAskedFor(); }

private:
    const std::function<bool()> isAskedFor;
    std::optional<Clock::time_point> deadline;
    std::atomic<bool> begun{false};
};

} // namespace analyser
