#pragma once

#include "talker/signals/SignalSource.h"

namespace talker {

/// A sine that is 0 and rising at sample 0; the same on all channels.
class SineSignal : public SignalSource {
public:
    SineSignal(double hertz, double amplitude) : hertz(hertz), amplitude(amplitude) {}

    std::int16_t code(std::uint64_t sample, unsigned channel) const override;
    bool differsByChannel() const override { return false; }

private:
    double hertz;
    double amplitude;
};

} // namespace talker
