#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "monitoring/Result.h"
#include "monitoring/analyses/AnalysisKind.h"

namespace support {

/// As on the command line, of a stream of two channels. @param value as "0:12"
inline std::shared_ptr<const monitoring::Analysis> makeAnalysis(const std::string &kind, const std::string &value,
                                                                const monitoring::ClockSettings &clock = {}) {
    const std::vector<monitoring::StreamSettings> streams = {{"020000000001", 2, 6}};
    return monitoring::parseAnalyses(
               [&](const char *option) {
                   return option == kind ? std::vector<std::string>{value} : std::vector<std::string>{};
               },
               {streams, clock})
        .at(0);
}

inline monitoring::Result makeResult(std::shared_ptr<const monitoring::Analysis> analysis, std::vector<double> y) {
    monitoring::Result result;
    result.analysis = std::move(analysis);
    result.sequence = 7;
    result.x = {0.0};
    result.y = std::move(y);
    return result;
}

} // namespace support
