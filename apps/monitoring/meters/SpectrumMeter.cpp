#include "monitoring/meters/SpectrumMeter.h"

#include <algorithm>

namespace monitoring {

namespace {

constexpr std::ptrdiff_t mainLobeHalf = 2; // bins of a Hann window

/// A window is kept in parts, as keeping all of its spectra would take the memory of minutes of them.
constexpr std::size_t partsOfWindow = 8;

void hold(std::vector<double> &highest, const std::vector<double> &values) {
    highest.resize(values.size());
    std::transform(values.begin(), values.end(), highest.begin(), highest.begin(),
                   [](double one, double other) { return std::max(one, other); });
}

} // namespace

SpectrumMeter::SpectrumMeter(double binWidth, std::size_t window)
    : width(binWidth), partLength((window + partsOfWindow - 1) / partsOfWindow),
      partsKept(partLength <= 1 ? window : partsOfWindow + 1) {}

void SpectrumMeter::take(const std::vector<double> &values) {
    newest = values;
    if (partLength == 0) {
        hold(held, newest);
        return;
    }
    if (parts.empty() || inNewestPart == partLength) {
        parts.emplace_back();
        inNewestPart = 0;
    }
    ++inNewestPart;
    hold(parts.back(), newest);
    if (parts.size() > partsKept) {
        parts.pop_front();
    }
    held.clear();
    for (const auto &part : parts) {
        hold(held, part);
    }
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
