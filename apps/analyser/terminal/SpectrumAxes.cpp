#include "analyser/terminal/SpectrumAxes.h"

#include <algorithm>
#include <cmath>

namespace analyser {

namespace {

constexpr double lowestAudible = 20.0; // Hz

} // namespace

FrequencyAxis::FrequencyAxis(std::size_t bins, double binWidth, std::size_t columns)
    : bins(bins), binWidth(binWidth), columns(columns), low(std::max(lowestAudible, binWidth)),
      high(std::max(binWidth * static_cast<double>(bins), 2 * low)) {}

double FrequencyAxis::column(double frequency) const {
    return static_cast<double>(columns) * std::log(frequency / low) / std::log(high / low);
}

std::vector<double> FrequencyAxis::columnsOf(const std::vector<double> &powers) const {
    std::vector<double> highest;
    if (powers.empty() || bins == 0) {
        return highest;
    }
    const auto frequency = [this](std::size_t at) {
        return low * std::pow(high / low, static_cast<double>(at) / static_cast<double>(columns));
    };
    const auto bin = [&](double at) {
        return std::min(static_cast<std::size_t>(std::lround(at / binWidth)), powers.size() - 1);
    };
    for (std::size_t at = 0; at < columns; ++at) {
        const std::size_t first = bin(frequency(at));
        const std::size_t end = std::max(bin(frequency(at + 1)), first + 1);
        highest.push_back(*std::max_element(powers.begin() + static_cast<std::ptrdiff_t>(first),
                                            powers.begin() + static_cast<std::ptrdiff_t>(end)));
    }
    return highest;
}

} // namespace analyser
