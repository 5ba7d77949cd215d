#pragma once

#include <chrono>
#include <optional>

namespace talker {

/// When to send the frames of a capture, by the times that it gives them. A clock that was set meanwhile, or files that
/// were put together, stop nobody: whatever the times, the moments never go back and no pause is too long.
class ReplayTimeline {
public:
    using Duration = std::chrono::nanoseconds;

    static constexpr Duration longestPause = std::chrono::seconds(10);
    /// Captures of several queues mix up frames that are this near. They are sent at once, later ones at their time.
    static constexpr Duration reordering = std::chrono::milliseconds(100);

    /// The moment of the next frame, counted from that of the first one.
    Duration next(Duration time);

    /// How often the times went back or ahead so far that the rest had to be moved.
    unsigned getJumps() const { return jumps; }

private:
    std::optional<Duration> origin; ///< the time of moment 0
    Duration latest = Duration::zero();
    unsigned jumps = 0;
};

} // namespace talker
