#include "talker/signals/SquareSignal.h"

#include <cmath>

namespace talker {

std::int16_t SquareSignal::code(std::uint64_t sample, unsigned /*channel*/) const {
    const double periods = hertz * static_cast<double>(sample) / samplesPerSecond;
    return toCode(periods - std::floor(periods) < 0.5 ? amplitude : -amplitude);
}

} // namespace talker
