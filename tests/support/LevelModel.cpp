#include "support/LevelModel.h"

#include <algorithm>
#include <cmath>

namespace support {

const std::vector<LevelModel::Section> LevelModel::aWeighting = {
    {{0.10307251662015915, -0.07544908672571182, -0.027623435482382774},
     {1.0, -1.9946142435073853, 0.9946214556694031}},
    {{1.183416724205017, -2.366833448410034, 1.183416724205017}, {1.0, -1.89385986328125, 0.8951497673988342}},
    {{4.769514083862305, -3.4912843704223633, -1.278229832649231}, {1.0, -0.22457602620124817, 0.012608597986400127}}};

const std::vector<LevelModel::Section> LevelModel::cWeighting = {
    {{0.10307244956493378, -0.07544903457164764, -0.027623416855931282}, {1.0, -1.994612216949463, 0.9946195483207703}},
    {{4.780937671661377, -3.4996461868286133, -1.2812912464141846}, {1.0, -0.22422178089618683, 0.012568851001560688}}};

double LevelModel::Section::filter(double value) {
    const double result = (b[0] * value + b[1] * x[0] + b[2] * x[1] - a[1] * y[0] - a[2] * y[1]) / a[0];
    x = {value, x[0]};
    y = {result, y[0]};
    return result;
}

std::vector<double> LevelModel::measure(const std::vector<float> &samples) {
    std::vector<double> peaks(7, 0.0);
    for (const float sample : samples) {
        for (std::size_t weighting = 0; weighting < filters.size(); ++weighting) {
            auto value = static_cast<double>(sample);
            for (Section &section : filters[weighting]) {
                value = section.filter(value);
            }
            double &fast = averages[2 * weighting];
            double &slow = averages[2 * weighting + 1];
            fast = 0.999833347221 * fast + 0.000166652779 * value * value;
            slow = 0.999979166884 * slow + 2.0833116e-05 * value * value;
            peaks[2 * weighting] = std::max(peaks[2 * weighting], fast);
            peaks[2 * weighting + 1] = std::max(peaks[2 * weighting + 1], slow);
        }
    }
    peaks[6] = peaks[4];
    for (double &peak : peaks) {
        peak = 10 * std::log10(peak);
    }
    return peaks;
}

} // namespace support
