#pragma once

#include <cstdint>
#include <optional>

#include "discovery/RateMeter.h"

namespace discovery {

/// How far the rate of a stream is off its nominal value, by when its frames arrive. Frames come late, never early, so
/// of each stretch of 50 ms only the frame counts that came earliest for its place: bursts and pauses have no say.
class ArrivalMeter {
public:
    /// @param period nominal, ns a sample
    explicit ArrivalMeter(double period);

    /// The next frame doesn't come right behind the one before.
    void breakOff();
    /// @param position in samples @param time ns
    void add(std::uint64_t position, std::int64_t time);

    /// Parts per million, positive for too fast; none before half a second.
    std::optional<double> ppm() const;

private:
    struct Frame {
        std::uint64_t position;
        std::int64_t time;
    };

    double lateness(const Frame &frame) const;

    const double period;
    RateMeter rate;
    std::optional<Frame> first; ///< of the stretch
    Frame earliest{};           ///< in it
};

} // namespace discovery
