#pragma once

#include <optional>
#include <string>
#include <vector>

#include "monitoring/analyses/Analysis.h"

namespace monitoring {

/// All that a session is to do.
struct SessionSettings {
    std::string device;
    std::vector<StreamSettings> streams;
    Analyses analyses;
    /// Of all analyses but those that can't do with it.
    ClockSettings clock;
    unsigned bufferSize = 0; ///< samples
    /// What 0 dB full scale is in dB SPL, for those who show levels.
    std::optional<double> reference;
    /// Seconds that highest values and means are taken over, for those who show them; 0 for the whole run.
    double window = 0.0;
};

} // namespace monitoring
