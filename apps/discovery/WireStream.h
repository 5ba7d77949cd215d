#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/MacAddress.h"
#include "common/StreamId.h"
#include "discovery/EthernetFrame.h"
#include "discovery/StreamFormat.h"

namespace discovery {

/// A stream as its frames show it: what they say last, and what happened while they were heard. Times in seconds.
struct WireStream {
    /// Least and greatest are the same for a steady stream.
    struct Samples {
        unsigned least;
        unsigned greatest;
    };
    /// Between one frame and the next.
    struct Distance {
        double least;
        double mean;
        double greatest;
    };

    std::optional<common::StreamId> id; ///< none if the frames mark theirs as not valid
    common::MacAddress source{};
    common::MacAddress destination{};
    std::optional<VlanTag> tag;
    std::uint64_t addressChanges = 0; ///< of source, destination or tag: two talkers with one ID, for example

    StreamFormat format;
    std::uint64_t formatChanges = 0;
    /// Of each channel in a packet, since the format changed last; none if a data length leaves a rest, or for no
    /// audio.
    std::optional<Samples> samples;
    std::optional<unsigned> dataLength; ///< bytes, as declared by the last frame

    std::uint64_t frames = 0;
    std::uint64_t framesCutShort = 0; ///< that end before the data that they declare
    double firstHeard = 0;            ///< since the listening began
    double lastHeard = 0;
    std::optional<double> framesPerSecond;
    std::uint64_t gaps = 0;
    std::uint64_t framesLost = 0;       ///< at least: the sequence has 8 bits
    std::uint64_t framesOutOfOrder = 0; ///< late, repeated, or of a talker that began anew

    std::uint64_t timestampsValid = 0;
    std::uint64_t timestampsUncertain = 0; ///< frames that call their time uncertain
    std::uint64_t timestampLeaps = 0;      ///< without a restart of the clock
    std::uint64_t clockRestarts = 0;
    /// How far the media clock is off the nominal rate, in parts per million: by its own time stamps, against the
    /// network's clock; and by the arrivals, against this machine's.
    std::optional<double> timestampPpm;
    std::optional<double> arrivalPpm;
    std::optional<Distance> arrivalDistance;

    /// Why the stream can't be monitored; empty if it can.
    std::string obstacle;
    bool hasSoundLevels = false; ///< if it is monitored
    /// What the monitor's option --stream takes; empty if it can't be monitored.
    std::string argument;
};

} // namespace discovery
