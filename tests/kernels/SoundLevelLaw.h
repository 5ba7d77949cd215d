#pragma once

#include <algorithm>
#include <vector>

namespace support {

/// A cascade of sections of second order, value by value.
template <class Real>
class CascadeLaw {
public:
    /// @param taps B0, B1, B2, A0, A1, A2 of each section
    explicit CascadeLaw(const std::vector<double> &taps, const std::vector<double> &delayLine = {})
        : taps(taps.begin(), taps.end()), delays(delayLine.begin(), delayLine.end()) {
        for (std::size_t index = 0; index < taps.size(); ++index) {
            this->taps[index] /= static_cast<Real>(taps[index / 6 * 6 + 3]);
        }
        delays.resize(taps.size() / 3);
    }

    Real filter(Real x) {
        Real *delay = delays.data();
        for (const Real *tap = taps.data(); tap != taps.data() + taps.size(); tap += 6, delay += 2) {
            const Real y = tap[0] * x + delay[0];
            delay[0] = tap[1] * x - tap[4] * y + delay[1];
            delay[1] = tap[2] * x - tap[5] * y;
            x = y;
        }
        return x;
    }

private:
    std::vector<Real> taps;
    std::vector<Real> delays;
};

/// An exponential average of squares, and its highest value.
template <class Real>
struct AverageLaw {
    Real keep;
    Real input;
    Real average = 0;
    Real peak = 0;

    void add(Real x) {
        average = keep * average + input * x * x;
        peak = std::max(peak, average);
    }
};

} // namespace support
