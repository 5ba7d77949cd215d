#pragma once

#include "talker/signals/SignalSource.h"

namespace talker {

/// The positive amplitude in the first half of each period, the negative one in the second; the same on all channels.
class SquareSignal : public SignalSource {
public:
    SquareSignal(double hertz, double amplitude) : hertz(hertz), amplitude(amplitude) {}

    std::int16_t code(std::uint64_t sample, unsigned channel) const override;
    bool differsByChannel() const override { return false; }

private:
    double hertz;
    double amplitude;
};

} // namespace talker
