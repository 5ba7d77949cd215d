#include "analyser/Levels.h"

#include <cmath>

#include "analyser/Text.h"

namespace analyser {

double decibels(double power) {
    return 10.0 * std::log10(power);
}

std::string LevelUnit::text(double level) const {
    return text::fixed(shown(level), 1);
}

} // namespace analyser
