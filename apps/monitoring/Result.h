#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "monitoring/analyses/Analysis.h"

namespace monitoring {

/// One result of an analysis, taken out of the library's form once for all who listen. Never changes.
struct Result {
    std::shared_ptr<const Analysis> analysis;
    /// Counts the results of the analysis, from 0.
    std::uint64_t sequence = 0;
    std::vector<double> x;
    std::vector<double> y;
    /// Where its last sample lies in the stream: that many samples of a channel have been taken since the start. Within
    /// a packet or two with the internal clock, and once the stream was without the channel for a while.
    std::uint64_t endSample = 0;
    /// When that sample was captured, by the system's clock and within a packet; nothing before the first frame.
    std::optional<std::chrono::system_clock::time_point> endTime;
    /// Whether samples are missing among those that the result rests on, or right before them. A frame that came twice
    /// counts too, as the one behind it is dropped.
    bool behindGap = false;
};

} // namespace monitoring
