#include "talker/signals/SignalSource.h"

#include <algorithm>
#include <cmath>

namespace talker {

std::int16_t SignalSource::toCode(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value * 32768.0, -32768.0, 32767.0)));
}

} // namespace talker
