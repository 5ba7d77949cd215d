#pragma once

#include <cstdint>
#include <optional>

#include "discovery/ArrivalMeter.h"
#include "discovery/AvtpPacket.h"
#include "discovery/EthernetFrame.h"
#include "discovery/RateMeter.h"
#include "discovery/WireStream.h"

namespace discovery {

/// Follows one stream from frame to frame, in constant memory.
class StreamObserver {
public:
    /// @param time of the arrival, ns since the listening began
    void add(const EthernetFrame &frame, const AvtpPacket &packet, std::int64_t time);

    /// All but whether it can be monitored.
    WireStream describe() const;
    std::uint64_t frames() const { return stream.frames; }

private:
    void followAddresses(const EthernetFrame &frame);
    void followFormat(const AvtpPacket &packet);
    void followSamples(const AvtpPacket &packet);
    bool followSequence(const AvtpPacket &packet);
    void followArrival(std::int64_t time);
    void followClock(const AvtpPacket &packet);
    void breakOff();

    WireStream stream; ///< what needs no calculation
    bool hasRest = false;

    std::uint8_t lastSequence = 0;
    std::uint8_t newestSequence = 0;

    std::int64_t firstArrival = 0; ///< ns
    std::int64_t lastArrival = 0;
    std::int64_t leastDistance = 0;
    std::int64_t greatestDistance = 0;

    bool lastRestart = false;
    bool hasTimestamp = false; ///< since the last break
    std::uint32_t lastTimestamp = 0;
    std::int64_t presentation = 0; ///< the last time stamp, without a bound
    std::uint64_t position = 0;    ///< samples before the next packet
    std::optional<RateMeter> timestamps;
    std::optional<ArrivalMeter> arrivals;
};

} // namespace discovery
