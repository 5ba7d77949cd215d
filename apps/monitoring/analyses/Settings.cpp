#include "monitoring/analyses/Settings.h"

namespace monitoring {

std::string ClockSettings::toString() const {
    return internal ? "internal:" + std::to_string(period) + " ms" : "external:" + std::to_string(period) + " samples";
}

double ClockSettings::seconds() const {
    return period / (internal ? 1000.0 : sampleRate);
}

} // namespace monitoring
