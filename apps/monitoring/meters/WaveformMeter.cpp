#include "monitoring/meters/WaveformMeter.h"

#include <algorithm>
#include <cmath>

namespace monitoring {

void WaveformMeter::take(const std::vector<double> &values) {
    newest = values;
    newestPeak = 0.0;
    for (const double value : newest) {
        newestPeak = std::max(newestPeak, std::abs(value));
    }
    highest = peakTaken ? newestPeak : std::max(highest, newestPeak);
    peakTaken = false;
}

double WaveformMeter::takePeak() {
    peakTaken = true;
    return highest;
}

} // namespace monitoring
