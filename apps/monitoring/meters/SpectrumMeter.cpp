#include "monitoring/meters/SpectrumMeter.h"

#include <algorithm>

namespace monitoring {

namespace {

constexpr std::ptrdiff_t mainLobeHalf = 2; // bins of a Hann window

} // namespace

void SpectrumMeter::take(const std::vector<double> &values) {
    newest = values;
    held.resize(newest.size());
    std::transform(newest.begin(), newest.end(), held.begin(), held.begin(),
                   [](double power, double highest) { return std::max(power, highest); });
}

SpectrumMeter::Tone SpectrumMeter::strongestTone() const {
    if (newest.empty()) {
        return {};
    }
    const auto highest = std::max_element(newest.begin(), newest.end());
    const auto begin = highest - std::min<std::ptrdiff_t>(highest - newest.begin(), mainLobeHalf);
    const auto end = highest + std::min<std::ptrdiff_t>(newest.end() - highest, mainLobeHalf + 1);
    Tone tone;
    tone.frequency = static_cast<double>(highest - newest.begin()) * width;
    for (auto power = begin; power != end; ++power) {
        tone.power += *power;
    }
    return tone;
}

} // namespace monitoring
