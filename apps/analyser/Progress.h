#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analyser/LogObserver.h"

namespace analyser {

struct AnalysisProgress {
    std::string name;
    std::string stream;
    unsigned channel = 0;
    std::uint64_t results = 0;
    /// Since the progress before.
    double resultsPerSecond = 0.0;
    /// "waiting" for the first result, "running" or "silent".
    std::string state;
};

/// How far a run has come.
struct Progress {
    /// Since the captures were started.
    double seconds = 0.0;
    std::vector<AnalysisProgress> analyses;
    std::uint64_t messages = 0;
    std::uint64_t packetsMissed = 0;
    /// Over all streams.
    RefusedFrames refused;
    /// What stands in the way of results, in sentences; empty while all is well.
    std::string conditions;
};

} // namespace analyser
