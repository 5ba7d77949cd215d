#include "analyser/terminal/WaveformPanel.h"

#include <algorithm>

#include "analyser/terminal/BrailleCurve.h"
#include "common/Text.h"

namespace analyser {

namespace {

constexpr double finestScale = 1.0 / 4096;

/// The next power of two that holds the peak. It shrinks late, so that the view doesn't flicker.
double fittingScale(double scale, double peak) {
    while (scale < peak) {
        scale *= 2;
    }
    while (scale > finestScale && peak < scale / 4) {
        scale /= 2;
    }
    return std::min(scale, 1.0);
}

} // namespace

std::string WaveformPanel::takeHeadline() {
    return "peak " + text::fixed(meter.takePeak(), 4);
}

std::vector<std::string> WaveformPanel::draw(std::size_t columns, std::size_t rows) {
    scale = fittingScale(scale, meter.peak());
    const std::string upper = "+" + text::fixed(scale, 4) + " ";
    const std::string lower = "-" + text::fixed(scale, 4) + " ";
    auto lines = brailleCurve(meter.values(), scale, columns > upper.size() ? columns - upper.size() : 0, rows);
    for (std::size_t row = 0; row < rows; ++row) {
        const bool isEdge = row == 0 || row + 1 == rows;
        lines[row].insert(0, !isEdge ? std::string(upper.size(), ' ') : row == 0 ? upper : lower);
    }
    return lines;
}

} // namespace analyser
