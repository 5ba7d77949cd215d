#include "monitoring/analyses/Settings.h"

#include "common/Text.h"

namespace monitoring {

std::string StreamSettings::toString() const {
    return text::counted(channels, "channel") + ", " +
           (samplesPerChannel > 0 ? text::counted(samplesPerChannel, "sample") : "as many samples as come") +
           " per channel in a packet, " + (format != nullptr ? std::string(format->name) : "16 bits") + ", " +
           std::to_string(sampleRate) + " Hz";
}

std::string ClockSettings::toString() const {
    return internal ? "internal:" + std::to_string(period) + " ms" : "external:" + std::to_string(period) + " samples";
}

double ClockSettings::seconds(unsigned sampleRate) const {
    return period / (internal ? 1000.0 : static_cast<double>(sampleRate));
}

} // namespace monitoring
