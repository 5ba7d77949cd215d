#include "analyser/LevelPanel.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <sonvex/IVectorData.h>

#include "analyser/Text.h"

namespace analyser {

namespace {

constexpr double range = 90.0; // dB below full scale
constexpr std::size_t numberWidth = 6;
constexpr double silence = -std::numeric_limits<double>::infinity();

std::string padded(const std::string &text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

/// Full blocks up to the level and a mark at the highest value.
std::string bar(double level, double highest, std::size_t columns) {
    const auto position = [columns](double value) {
        const double part = std::clamp(1.0 + value / range, 0.0, 1.0);
        return static_cast<std::size_t>(std::lround(part * static_cast<double>(columns)));
    };
    const std::size_t filled = position(level);
    const std::size_t mark = position(highest);
    std::string result;
    for (std::size_t column = 0; column < columns; ++column) {
        result += column < filled ? "█" : column + 1 == mark ? "│" : " ";
    }
    return result;
}

} // namespace

std::array<LevelPanel::Meter, levelNames.size()> LevelPanel::startMeters() {
    std::array<Meter, levelNames.size()> start{};
    start.fill({silence, silence, 0.0});
    return start;
}

void LevelPanel::take(const sonvex::IVectorData &data) {
    const std::vector<double> levels = data.getY();
    for (std::size_t index = 0; index < std::min(levels.size(), meters.size()); ++index) {
        Meter &meter = meters[index];
        meter.level = levels[index];
        meter.highest = std::max(meter.highest, meter.level);
        meter.energy += std::pow(10.0, meter.level / 10.0);
    }
    ++results;
}

std::string LevelPanel::takeHeadline() {
    const double equivalent = decibels(results > 0 ? meters[5].energy / results : 0.0);
    return unit.name() + "  fast A " + unit.text(meters[0].level) + " C " + unit.text(meters[2].level) + " Z " +
           unit.text(meters[4].level) + "  Z max " + unit.text(meters[4].highest) + " eq " + unit.text(equivalent);
}

std::string LevelPanel::describe(const Meter &meter) const {
    const double equivalent = decibels(results > 0 ? meter.energy / results : 0.0);
    return padded(unit.text(meter.level), numberWidth) + "  max " + padded(unit.text(meter.highest), numberWidth) +
           "  eq " + padded(unit.text(equivalent), numberWidth);
}

std::vector<std::string> LevelPanel::draw(std::size_t columns, std::size_t rows) const {
    constexpr std::size_t nameWidth = 11;
    std::vector<std::string> lines;
    for (std::size_t index = 0; index < std::min(rows, meters.size()); ++index) {
        const std::string name = levelNames[index].shown;
        const std::string line = name + std::string(nameWidth - name.size(), ' ') + describe(meters[index]) + ' ';
        const std::size_t room = columns > line.size() ? columns - line.size() : 0;
        lines.push_back(line + bar(meters[index].level, meters[index].highest, room));
    }
    return lines;
}

} // namespace analyser
