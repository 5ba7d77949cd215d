#include "analyser/terminal/SoundLevelPanel.h"

#include <algorithm>
#include <cmath>

namespace analyser {

namespace {

constexpr double range = 90.0; // dB below full scale
constexpr std::size_t numberWidth = 6;

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

std::string SoundLevelPanel::takeHeadline() {
    const auto &levels = meter.readings();
    return unit.name() + "  fast A " + unit.text(levels[0].level) + " C " + unit.text(levels[2].level) + " Z " +
           unit.text(levels[4].level) + "  Z max " + unit.text(levels[4].maximum) + " eq " +
           unit.text(levels[5].equivalent);
}

std::string SoundLevelPanel::describe(const monitoring::SoundLevelMeter::Reading &reading) const {
    return padded(unit.text(reading.level), numberWidth) + "  max " + padded(unit.text(reading.maximum), numberWidth) +
           "  eq " + padded(unit.text(reading.equivalent), numberWidth);
}

std::vector<std::string> SoundLevelPanel::draw(std::size_t columns, std::size_t rows) {
    constexpr std::size_t nameWidth = 11;
    const auto &levels = meter.readings();
    std::vector<std::string> lines;
    for (std::size_t index = 0; index < std::min(rows, levels.size()); ++index) {
        const std::string name = monitoring::levelNames[index].shown;
        const std::string line = name + std::string(nameWidth - name.size(), ' ') + describe(levels[index]) + ' ';
        const std::size_t room = columns > line.size() ? columns - line.size() : 0;
        lines.push_back(line + bar(levels[index].level, levels[index].maximum, room));
    }
    return lines;
}

std::string SoundLevelPanel::drawLine(const std::string &title, std::size_t columns) {
    constexpr std::size_t roomForAll = 80; // columns
    const auto &levels = meter.readings();
    const auto text = [&](double level) { return padded(unit.text(level), numberWidth); };
    std::string line = title;
    if (columns >= roomForAll) {
        line += "  A " + text(levels[0].level) + "  C " + text(levels[2].level) + "  Z " + text(levels[4].level) +
                "  max " + text(levels[4].maximum) + ' ';
    } else {
        line += ' ' + text(levels[4].level) + ' ';
    }
    return line + bar(levels[4].level, levels[4].maximum, columns > line.size() ? columns - line.size() : 0);
}

} // namespace analyser
