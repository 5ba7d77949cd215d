#pragma once

#include "talker/signals/SignalSource.h"

namespace talker {

/// Digital zero.
class SilenceSignal : public SignalSource {
public:
    std::int16_t code(std::uint64_t /*sample*/, unsigned /*channel*/) const override { return 0; }
    bool differsByChannel() const override { return false; }
};

} // namespace talker
