#pragma once

#include "talker/signals/SignalSource.h"

namespace talker {

/// Counts the samples through all 65536 codes; channel c is 1000 c steps ahead, so every channel differs.
class RampSignal : public SignalSource {
public:
    std::int16_t code(std::uint64_t sample, unsigned channel) const override {
        return static_cast<std::int16_t>(sample + std::uint64_t{1000} * channel);
    }
};

} // namespace talker
