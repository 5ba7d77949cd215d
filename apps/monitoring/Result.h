#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
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
    /// Where its last sample lies in the stream: that many samples of the channel have been taken since the start. With
    /// the internal clock within a packet or two.
    std::uint64_t endSample = 0;
    /// When that sample was captured, by the system's clock and within a packet.
    std::chrono::system_clock::time_point endTime;
    /// Whether samples are missing among those of the result, or right before them.
    bool behindGap = false;
};

} // namespace monitoring
