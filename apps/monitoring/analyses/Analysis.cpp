#include "monitoring/analyses/Analysis.h"

#include <algorithm>
#include <cmath>

#include "monitoring/analyses/AnalysisKind.h"

namespace monitoring {

Analysis::Analysis(Channel channel, unsigned amount, ClockSettings clock)
    : place(std::move(channel)), samples(amount), resultClock(clock) {}

Analysis::~Analysis() = default;

std::string Analysis::name() const {
    return kind().name + std::string(1, '_') + place.stream + "_ch" + std::to_string(place.number);
}

void Analysis::configureProcessor(sonvex::iprocess::IProcessorConfigBase & /*config*/) const {}

std::size_t Analysis::resultsIn(double seconds) const {
    return seconds > 0.0 ? static_cast<std::size_t>(std::max(std::lround(seconds / period()), 1L)) : 0;
}

std::string describeLimits(const Analyses &analyses, unsigned bufferSize) {
    std::vector<std::string> all;
    std::string text;
    for (const auto &analysis : analyses) {
        for (const std::string &limit : analysis->limits(bufferSize)) {
            if (std::find(all.begin(), all.end(), limit) == all.end()) {
                all.push_back(limit);
                text += (text.empty() ? "" : "; ") + limit;
            }
        }
    }
    return text;
}

} // namespace monitoring
