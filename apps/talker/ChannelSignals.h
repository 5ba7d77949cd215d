#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "talker/AafFrame.h"
#include "talker/Signal.h"

namespace talker {

/// The signals of all channels, in the order of the channels; the last one serves all further channels.
class ChannelSignals {
public:
    /// @param texts descriptions as Signal::parse takes them, at least one
    ChannelSignals(const std::vector<std::string> &texts, unsigned rate);

    /// Writes all samples of a frame.
    /// @param firstSample index of the frame's first sample since the start
    /// @param firstChannel number of the frame's first channel, where streams share the signals
    void fill(AafFrame &frame, std::uint64_t firstSample, unsigned firstChannel = 0) const;

private:
    std::vector<Signal> signals;
};

} // namespace talker
