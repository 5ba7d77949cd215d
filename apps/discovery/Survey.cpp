#include "discovery/Survey.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "discovery/judge.h"
#include "discovery/readOffers.h"

namespace discovery {

void Survey::add(Bytes bytes, std::size_t wireSize, std::int64_t time) {
    const EthernetFrame frame(bytes, wireSize);
    if (frame.flaw == EthernetFrame::Flaw::incomplete) {
        ++frames.incomplete;
    } else if (frame.flaw == EthernetFrame::Flaw::severalTags) {
        ++frames.severalTags;
    } else if (frame.etherType == EthernetFrame::avtp) {
        addAvtp(frame, time);
    } else if (frame.etherType == EthernetFrame::reservation) {
        addReservations(frame);
    }
}

void Survey::addAvtp(const EthernetFrame &frame, std::int64_t time) {
    const AvtpPacket packet(frame.payload, frame.wireSize);
    using Content = AvtpPacket::Content;
    if (packet.content == Content::incomplete) {
        ++frames.incomplete;
        return;
    }
    if (packet.content == Content::otherVersion) {
        ++frames.otherVersion;
        return;
    }
    ++frames.avtp;
    if (packet.content == Content::control) {
        ++frames.control;
        return;
    }
    const Key key = keyOf(frame, packet);
    auto found = streams.find(key);
    if (found == streams.end()) {
        if (streams.size() >= greatestStreams) {
            if (streamsBeyond.size() < greatestStreamsBeyond) {
                const std::string_view text(reinterpret_cast<const char *>(key.data()), key.size());
                streamsBeyond.insert(std::hash<std::string_view>{}(text));
            }
            return;
        }
        found = streams.emplace(key, StreamObserver()).first;
    }
    found->second.add(frame, packet, time);
}

Survey::Key Survey::keyOf(const EthernetFrame &frame, const AvtpPacket &packet) {
    Key key{};
    if (packet.id) {
        std::copy(packet.id->begin(), packet.id->end(), key.begin() + 1);
    } else {
        key[0] = 1;
        std::copy(frame.source.begin(), frame.source.end(), key.begin() + 1);
        std::copy(frame.destination.begin(), frame.destination.end(), key.begin() + 7);
    }
    return key;
}

void Survey::addReservations(const EthernetFrame &frame) {
    const bool inOrder =
        readOffers(frame.payload, [this](const Announcement &announcement) { announce(announcement); });
    ++(inOrder ? frames.reservations : frames.incomplete);
}

void Survey::announce(const Announcement &announcement) {
    const auto found = offers.find(announcement.offer.id);
    if (announcement.withdrawn) {
        if (found != offers.end()) {
            offers.erase(found);
        }
    } else if (found != offers.end()) {
        found->second = announcement.offer;
    } else if (offers.size() < greatestOffers) {
        offers.emplace(announcement.offer.id, announcement.offer);
    } else {
        ++announcementsBeyond;
    }
}

Findings Survey::describe(double seconds) const {
    Findings findings;
    findings.seconds = seconds;
    findings.frames = frames;
    findings.streamsBeyond = streamsBeyond.size();
    findings.announcementsBeyond = announcementsBeyond;
    std::map<common::MacAddress, unsigned> streamsOfSource;
    for (const auto &[key, observer] : streams) {
        findings.streams.push_back(observer.describe());
        ++streamsOfSource[findings.streams.back().source];
    }
    for (WireStream &stream : findings.streams) {
        judge(stream, streamsOfSource[stream.source] > 1);
    }
    for (const auto &[id, offer] : offers) {
        Key key{};
        std::copy(id.begin(), id.end(), key.begin() + 1);
        findings.offers.push_back(offer);
        findings.offers.back().isDelivered = streams.count(key) > 0;
    }
    return findings;
}

} // namespace discovery
