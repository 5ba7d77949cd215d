#include "talker/signals/SineSignal.h"

#include <cmath>

namespace talker {

std::int16_t SineSignal::code(std::uint64_t sample, unsigned /*channel*/) const {
    constexpr double pi = 3.14159265358979323846;
    return toCode(amplitude * std::sin(2.0 * pi * hertz * static_cast<double>(sample) / samplesPerSecond));
}

} // namespace talker
