#pragma once

#include <cstdint>

namespace talker {

inline constexpr double samplesPerSecond = 48000.0;

/// A signal for any amount of channels, addressed by the sample's index since the start: it has no state, so every
/// sample can be computed again by whoever checks what was received.
class SignalSource {
public:
    virtual ~SignalSource() = default;

    virtual std::int16_t code(std::uint64_t sample, unsigned channel) const = 0;

    /// Whether code must be asked for every channel: a sine for a thousand channels is too slow otherwise.
    virtual bool differsByChannel() const { return true; }

    /// The 16-bit code of a value: full scale is 1.0, what exceeds it is clipped.
    static std::int16_t toCode(double value);
};

} // namespace talker
