#include "support/SoundLevelModel.h"

#include <cmath>

namespace support {

namespace {

// No number comes from the library, so that a wrong one in there is found.

/// B0, B1, B2, A1, A2 of each section.
constexpr std::array<double, 15> tapsA = {
    0.10307251662015915, -0.07544908672571182, -0.027623435482382774, -1.9946142435073853,  0.9946214556694031,
    1.183416724205017,   -2.366833448410034,   1.183416724205017,     -1.89385986328125,    0.8951497673988342,
    4.769514083862305,   -3.4912843704223633,  -1.278229832649231,    -0.22457602620124817, 0.012608597986400127};
constexpr std::array<double, 10> tapsC = {
    0.10307244956493378, -0.07544903457164764, -0.027623416855931282, -1.994612216949463,   0.9946195483207703,
    4.780937671661377,   -3.4996461868286133,  -1.2812912464141846,   -0.22422178089618683, 0.012568851001560688};
constexpr double keepFast = 0.999833347221;
constexpr double inputFast = 0.000166652779;
constexpr double keepSlow = 0.999979166884;
constexpr double inputSlow = 2.0833116e-05;

template <std::size_t Taps, std::size_t Delays>
double filter(double x, const std::array<double, Taps> &taps, std::array<double, Delays> &delays) {
    for (std::size_t section = 0; section < Delays / 2; ++section) {
        const double *const tap = taps.data() + 5 * section;
        double *const delay = delays.data() + 2 * section;
        const double y = tap[0] * x + delay[0];
        delay[0] = tap[1] * x - tap[3] * y + delay[1];
        delay[1] = tap[2] * x - tap[4] * y;
        x = y;
    }
    return x;
}

} // namespace

std::vector<double> SoundLevelModel::measure(const std::vector<float> &samples) {
    std::array<double, 6> peaks{};
    for (const float sample : samples) {
        const auto x = static_cast<double>(sample);
        const double a = filter(x, tapsA, delaysA);
        const double c = filter(x, tapsC, delaysC);
        const double squares[3] = {a * a, c * c, x * x};
        for (std::size_t weighting = 0; weighting < 3; ++weighting) {
            double &fast = averages[2 * weighting];
            double &slow = averages[2 * weighting + 1];
            fast = keepFast * fast + inputFast * squares[weighting];
            slow = inputSlow * squares[weighting] + keepSlow * slow;
            peaks[2 * weighting] = fast > peaks[2 * weighting] ? fast : peaks[2 * weighting];
            peaks[2 * weighting + 1] = slow > peaks[2 * weighting + 1] ? slow : peaks[2 * weighting + 1];
        }
    }
    std::vector<double> levels(7);
    for (std::size_t index = 0; index < levels.size(); ++index) {
        levels[index] = 10.0 * std::log10(peaks[index == 6 ? 4 : index]);
    }
    return levels;
}

} // namespace support
