#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace talker {

inline constexpr double samplesPerSecond = 48000.0;

/// A signal for any amount of channels, addressed by the sample's index since the start: it has no state, so every
/// sample can be computed again by whoever checks what was received.
struct Signal {
    /**
     * The signal that a text describes: sine:HZ:AMPLITUDE (0 and rising at sample 0), square:HZ:AMPLITUDE (the positive
     * half of each period first), noise:AMPLITUDE (white, evenly distributed, the same at every run), ramp (through all
     * 65536 codes, channel c 1000 c steps ahead), silence or wav:FILE (in a loop, the channels in turn).
     * @throws common::Refusal for an unknown kind, for values out of range and for a file that can't be played
     */
    static Signal parse(const std::string &text);

    /// The 16-bit code of a sample.
    std::function<std::int16_t(std::uint64_t sample, unsigned channel)> code;
    /// Whether code must be asked for every channel: a sine for a thousand channels is too slow otherwise.
    bool differsByChannel;
};

/// The 16-bit code of a value: full scale is 1.0, what exceeds it is clipped.
std::int16_t toCode(double value);

} // namespace talker
