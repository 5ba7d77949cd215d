#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <limits>

#include "monitoring/meters/Meter.h"

namespace monitoring {

/// A value of a level result: its name in the library, which is for data, and one for the eye that promises no
/// calibration.
struct LevelName {
    const char *library;
    const char *shown;
};

/// In the order of the values.
inline constexpr std::array<LevelName, 7> levelNames{{{"dBA SPL fast", "A fast"},
                                                      {"dBA SPL slow", "A slow"},
                                                      {"dBC SPL fast", "C fast"},
                                                      {"dBC SPL slow", "C slow"},
                                                      {"dBZ SPL fast", "Z fast"},
                                                      {"dBZ SPL slow", "Z slow"},
                                                      {"dBFS", "full scale"}}};

/// Of a power relative to a mean square of 1.0.
double decibels(double power);

/// The levels, with their highest values and the means of the results' energies: over the run, or over the newest
/// results.
class SoundLevelMeter : public Meter {
public:
    struct Reading {
        double level = -std::numeric_limits<double>::infinity();
        double maximum = -std::numeric_limits<double>::infinity();
        double equivalent = -std::numeric_limits<double>::infinity();
    };

    /// @param window in results; 0 for the whole run
    explicit SoundLevelMeter(std::size_t window = 0) : window(window) {}

    void take(const std::vector<double> &values) override;
    void accept(MeterVisitor &visitor) override { visitor.visit(*this); }

    const std::array<Reading, levelNames.size()> &readings() const { return current; }

private:
    using Values = std::array<double, levelNames.size()>;

    struct Taken {
        Values levels;
        Values energies;
    };

    void readWindow();

    std::size_t window;
    std::deque<Taken> newest; ///< of a window
    Values energies{};        ///< sums over the run
    double results = 0.0;
    std::array<Reading, levelNames.size()> current;
};

} // namespace monitoring
