#pragma once

#include "talker/signals/SignalSource.h"

namespace talker {

/// White noise, evenly distributed between the negative and the positive amplitude: the same at every run, different on
/// every channel.
class NoiseSignal : public SignalSource {
public:
    explicit NoiseSignal(double amplitude) : amplitude(amplitude) {}

    std::int16_t code(std::uint64_t sample, unsigned channel) const override;

private:
    double amplitude;
};

} // namespace talker
