#include "analyser/terminal/SpectrumPanel.h"

#include <algorithm>
#include <cmath>

#include "analyser/terminal/BrailleCurve.h"
#include "analyser/terminal/SpectrumAxes.h"
#include "common/Text.h"
#include "monitoring/meters/SoundLevelMeter.h"

namespace analyser {

namespace {

constexpr double range = 120.0; // dB below full scale
constexpr std::size_t dotsAcross = 2;

/// From 0 dBFS at 1 to the end of the range at -1.
std::vector<double> heights(const std::vector<double> &powers) {
    std::vector<double> result(powers.size());
    std::transform(powers.begin(), powers.end(), result.begin(),
                   [](double power) { return std::clamp(1.0 + 2.0 * monitoring::decibels(power) / range, -1.0, 1.0); });
    return result;
}

std::string axisLine(const FrequencyAxis &axis, std::size_t columns) {
    std::string line(columns, ' ');
    std::size_t free = 0; // from where there is room
    for (const auto &[frequency, label] : {std::pair{20.0, "20"},
                                           {50.0, "50"},
                                           {100.0, "100"},
                                           {200.0, "200"},
                                           {500.0, "500"},
                                           {1000.0, "1k"},
                                           {2000.0, "2k"},
                                           {5000.0, "5k"},
                                           {10000.0, "10k"},
                                           {20000.0, "20k Hz"},
                                           {50000.0, "50k"}}) {
        const std::string text = label;
        const double position = axis.column(frequency);
        if (position < 0 || position + static_cast<double>(text.size()) > static_cast<double>(columns)) {
            continue;
        }
        const auto at = static_cast<std::size_t>(position);
        if (at >= free) {
            line.replace(at, text.size(), text);
            free = at + text.size() + 1;
        }
    }
    return line;
}

} // namespace

std::string SpectrumPanel::takeHeadline() {
    const auto tone = meter.strongestTone();
    return "peak at " + text::fixed(tone.frequency, 1) + " Hz, " + unit.text(monitoring::decibels(tone.power)) + ' ' +
           unit.name();
}

std::vector<std::string> SpectrumPanel::draw(std::size_t columns, std::size_t rows) {
    const std::vector<double> &powers = meter.powers();
    const std::string upper = unit.text(0) + ' ';
    const std::string lower = unit.text(-range) + ' ';
    const std::size_t margin = std::max(upper.size(), lower.size());
    if (columns <= margin || rows < 2) {
        return {};
    }
    const std::size_t width = columns - margin;
    const FrequencyAxis dots(powers.size(), meter.binWidth(), width * dotsAcross);
    auto lines =
        brailleCurve(heights(dots.columnsOf(powers)), 1.0, width, rows - 1, heights(dots.columnsOf(meter.peakHold())));
    for (std::size_t row = 0; row + 1 < rows; ++row) {
        const std::string label = row == 0 ? upper : row + 2 == rows ? lower : "";
        lines[row].insert(0, std::string(margin - label.size(), ' ') + label);
    }
    lines.push_back(std::string(margin, ' ') + axisLine(FrequencyAxis(powers.size(), meter.binWidth(), width), width));
    return lines;
}

} // namespace analyser
