#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_set>

#include "discovery/AvtpPacket.h"
#include "discovery/EthernetFrame.h"
#include "discovery/Findings.h"
#include "discovery/StreamObserver.h"

namespace discovery {

struct Announcement;

/// Collects frames by their streams. Its memory has a bound, whatever the frames are.
class Survey {
public:
    static constexpr std::size_t greatestStreams = 4096;
    static constexpr std::size_t greatestOffers = 4096;
    static constexpr std::size_t greatestStreamsBeyond = 65536;

    /// @param frame as it was captured @param wireSize as it was on the wire @param time ns since the listening began
    void add(Bytes frame, std::size_t wireSize, std::int64_t time);

    std::size_t streamAmount() const { return streams.size() + streamsBeyond.size(); }
    /// @param seconds that were listened
    Findings describe(double seconds) const;

private:
    /// The ID behind a 0, or the source and the destination behind a 1.
    using Key = std::array<std::uint8_t, 13>;

    static Key keyOf(const EthernetFrame &frame, const AvtpPacket &packet);
    void addAvtp(const EthernetFrame &frame, std::int64_t time);
    void addReservations(const EthernetFrame &frame);
    void announce(const Announcement &announcement);

    Findings::Frames frames;
    std::map<Key, StreamObserver> streams;
    std::unordered_set<std::uint64_t> streamsBeyond; ///< hashes of keys
    std::map<common::StreamId, Offer> offers;
    std::uint64_t announcementsBeyond = 0;
};

} // namespace discovery
