#pragma once

#include <optional>
#include <string>

namespace analyser {

/// How levels are shown: dBFS, or dB SPL where a calibration says what 0 dBFS is.
class SoundLevelUnit {
public:
    explicit SoundLevelUnit(std::optional<double> reference) : reference(reference) {}

    std::string name() const { return reference ? "dB SPL" : "dBFS"; }
    /// With one decimal, without the unit. @param level in dBFS
    std::string text(double level) const;

private:
    std::optional<double> reference;
};

} // namespace analyser
