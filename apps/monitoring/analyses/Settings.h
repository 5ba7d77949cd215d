#pragma once

#include <string>

namespace monitoring {

constexpr double sampleRate = 48000.0;

/// A stream as it has to be set up before its first frame.
struct StreamSettings {
    /// 12 lower-case hexadecimal digits.
    std::string mac;
    unsigned channels = 2;
    /// In one packet.
    unsigned samplesPerChannel = 6;
};

/// When results come.
struct ClockSettings {
    bool internal = false;
    /// Milliseconds of the internal clock, samples of the external one.
    unsigned period = 480;

    /// For the eye, with the unit.
    std::string toString() const;
    double seconds() const;
};

} // namespace monitoring
