#pragma once

#include <string>
#include <tuple>

#include "common/AafFormat.h"
#include "common/MacAddress.h"

namespace monitoring {

/// Of sound levels, and of all streams that nothing else is known of.
constexpr unsigned usualRate = 48000;

/// A stream as it has to be set up before its first frame.
struct StreamSettings {
    /// Of the source address 12 lower-case hexadecimal digits, or of the stream ID 16.
    std::string key;
    unsigned channels = 2;
    /// In one packet; 0 for what the length of each frame says.
    unsigned samplesPerChannel = 6;
    /// Null for 16 bits whatever the frames declare, and whatever rate.
    const common::AafFormat *format = nullptr;
    unsigned sampleRate = usualRate; ///< Hz

    bool isId() const { return key.size() > std::tuple_size_v<common::MacAddress> * 2; }
    /// "2 channels, 6 samples per channel in a packet, int16, 48000 Hz".
    std::string toString() const;
};

/// When results come.
struct ClockSettings {
    bool internal = false;
    /// Milliseconds of the internal clock, samples of the external one.
    unsigned period = 480;

    /// For the eye, with the unit.
    std::string toString() const;
    /// At a rate in Hz.
    double seconds(unsigned sampleRate) const;
};

} // namespace monitoring
