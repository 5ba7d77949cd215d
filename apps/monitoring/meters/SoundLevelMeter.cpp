#include "monitoring/meters/SoundLevelMeter.h"

#include <algorithm>
#include <cmath>

namespace monitoring {

double decibels(double power) {
    return 10.0 * std::log10(power);
}

void SoundLevelMeter::take(const std::vector<double> &values) {
    if (values.size() < current.size()) {
        return; // of a buffer that is too short for levels
    }
    ++results;
    Taken taken{};
    for (std::size_t index = 0; index < current.size(); ++index) {
        taken.levels[index] = values[index];
        taken.energies[index] = std::pow(10.0, values[index] / 10.0);
        energies[index] += taken.energies[index];
        Reading &reading = current[index];
        reading.level = values[index];
        reading.maximum = std::max(reading.maximum, reading.level);
        reading.equivalent = decibels(energies[index] / results);
    }
    if (window > 0) {
        newest.push_back(taken);
        if (newest.size() > window) {
            newest.pop_front();
        }
        readWindow();
    }
}

/// Anew each time: sums that things are taken out of again lose digits.
void SoundLevelMeter::readWindow() {
    for (std::size_t index = 0; index < current.size(); ++index) {
        double energy = 0.0;
        double maximum = -std::numeric_limits<double>::infinity();
        for (const Taken &taken : newest) {
            energy += taken.energies[index];
            maximum = std::max(maximum, taken.levels[index]);
        }
        current[index].maximum = maximum;
        current[index].equivalent = decibels(energy / static_cast<double>(newest.size()));
    }
}

} // namespace monitoring
