#pragma once

#include <array>
#include <optional>
#include <string>

namespace analyser {

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

/// How levels are shown: dBFS, or dB SPL where a calibration says what 0 dBFS is.
class LevelUnit {
public:
    explicit LevelUnit(std::optional<double> reference) : reference(reference) {}

    std::string name() const { return reference ? "dB SPL" : "dBFS"; }
    /// @param level in dBFS
    double shown(double level) const { return level + reference.value_or(0.0); }
    /// With one decimal, without the unit.
    std::string text(double level) const;

private:
    std::optional<double> reference;
};

} // namespace analyser
