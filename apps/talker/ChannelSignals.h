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
    explicit ChannelSignals(const std::vector<std::string> &texts);

    /// Writes all samples of a frame.
    /// @param firstSample index of the frame's first sample since the start
    void fill(AafFrame &frame, std::uint64_t firstSample) const;

private:
    std::vector<Signal> signals;
};

} // namespace talker
