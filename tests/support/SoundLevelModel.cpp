#include "support/SoundLevelModel.h"

#include <cmath>

namespace support {

namespace {

// No number comes from the library, so that a wrong one in there is found.
const std::vector<double> tapsA = {
    0.10307251662015915, -0.07544908672571182, -0.027623435482382774, 1, -1.9946142435073853,  0.9946214556694031,
    1.183416724205017,   -2.366833448410034,   1.183416724205017,     1, -1.89385986328125,    0.8951497673988342,
    4.769514083862305,   -3.4912843704223633,  -1.278229832649231,    1, -0.22457602620124817, 0.012608597986400127};
const std::vector<double> tapsC = {
    0.10307244956493378, -0.07544903457164764, -0.027623416855931282, 1, -1.994612216949463,   0.9946195483207703,
    4.780937671661377,   -3.4996461868286133,  -1.2812912464141846,   1, -0.22422178089618683, 0.012568851001560688};
constexpr AverageLaw<double> fast{0.999833347221, 0.000166652779};
constexpr AverageLaw<double> slow{0.999979166884, 2.0833116e-05};

} // namespace

SoundLevelModel::SoundLevelModel()
    : weightings{CascadeLaw<double>(tapsA), CascadeLaw<double>(tapsC), CascadeLaw<double>({})}, averages{fast, slow,
                                                                                                         fast, slow,
                                                                                                         fast, slow} {}

std::vector<double> SoundLevelModel::measure(const std::vector<float> &samples) {
    for (AverageLaw<double> &average : averages) {
        average.peak = 0;
    }
    for (const float sample : samples) {
        for (std::size_t weighting = 0; weighting < 3; ++weighting) {
            const double x = weightings[weighting].filter(static_cast<double>(sample));
            averages[2 * weighting].add(x);
            averages[2 * weighting + 1].add(x);
        }
    }
    std::vector<double> levels;
    for (const std::size_t index : {0, 1, 2, 3, 4, 5, 4}) {
        levels.push_back(10.0 * std::log10(averages[index].peak));
    }
    return levels;
}

} // namespace support
