#include "analyser/terminal/BrailleCurve.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace analyser {

namespace {

constexpr std::size_t dotsAcross = 2;
constexpr std::size_t dotsDown = 4;

/// The bit of a dot within its character, by column and row.
constexpr std::array<std::array<unsigned, dotsDown>, dotsAcross> dotBits{
    {{0x01U, 0x02U, 0x04U, 0x40U}, {0x08U, 0x10U, 0x20U, 0x80U}}};

/// The row of dots for a value, counted from above.
int dotRow(double value, double scale, int height) {
    const double position = std::isfinite(value) ? std::clamp((1.0 - value / scale) / 2.0, 0.0, 1.0) : 0.5;
    return static_cast<int>(std::lround(position * (height - 1)));
}

/// U+2800 and the bits of its dots, in UTF-8.
std::string character(unsigned bits) {
    return {'\xe2', static_cast<char>(0xa0U | (bits >> 6U)), static_cast<char>(0x80U | (bits & 0x3fU))};
}

} // namespace

std::vector<std::string> brailleCurve(const std::vector<double> &values, double scale, std::size_t columns,
                                      std::size_t rows, const std::vector<double> &marks) {
    std::vector<std::vector<unsigned>> cells(rows, std::vector<unsigned>(columns));
    const std::size_t width = columns * dotsAcross;
    const int height = static_cast<int>(rows * dotsDown);
    const auto set = [&cells](std::size_t x, int y) {
        const auto row = static_cast<std::size_t>(y);
        cells[row / dotsDown][x / dotsAcross] |= dotBits[x % dotsAcross][row % dotsDown];
    };
    int before = 0; // where the column on the left ends
    for (std::size_t x = 0; x < width && height > 0 && !values.empty(); ++x) {
        const std::size_t first = x * values.size() / width;
        const std::size_t end = std::max((x + 1) * values.size() / width, first + 1);
        int top = height;
        int bottom = 0;
        int row = 0;
        for (std::size_t i = first; i < end; ++i) {
            row = dotRow(values[i], scale, height);
            top = std::min(top, row);
            bottom = std::max(bottom, row);
        }
        if (x > 0) {
            top = std::min(top, before + 1);
            bottom = std::max(bottom, before - 1);
        }
        before = row;
        for (int y = top; y <= bottom; ++y) {
            set(x, y);
        }
    }
    for (std::size_t x = 0; x < width && height > 0 && !marks.empty(); ++x) {
        const auto first = marks.begin() + static_cast<std::ptrdiff_t>(x * marks.size() / width);
        const auto end = marks.begin() + static_cast<std::ptrdiff_t>((x + 1) * marks.size() / width);
        set(x, dotRow(*std::max_element(first, std::max(end, first + 1)), scale, height));
    }
    std::vector<std::string> lines;
    for (const auto &row : cells) {
        std::string line;
        for (const unsigned bits : row) {
            line += character(bits);
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace analyser
