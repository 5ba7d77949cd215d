#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace talker {

/// A signal for any amount of channels, addressed by the sample's index since the start: it has no state, so every
/// sample can be computed again by whoever checks what was received.
struct Signal {
    /**
     * The signal that a text describes: sine:HZ:AMPLITUDE (0 and rising at sample 0; of whole hertz it repeats
     * exactly), square:HZ:AMPLITUDE (the positive half of each period first), noise:AMPLITUDE (white, evenly
     * distributed, the same at every run), ramp (through all 65536 codes of 16 bits, channel c 1000 c steps ahead;
     * exact in every format), silence or wav:FILE (in a loop, the channels in turn).
     * @param rate samples per second
     * @throws common::Refusal for an unknown kind, for values out of range and for a file that can't be played
     */
    static Signal parse(const std::string &text, unsigned rate);

    /// The value of a sample. Full scale is 1.0, which it may exceed.
    std::function<double(std::uint64_t sample, unsigned channel)> value;
    /// Whether the value must be asked for every channel: noise for a thousand channels is slow enough.
    bool differsByChannel;
};

} // namespace talker
