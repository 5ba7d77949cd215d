#include "discovery/Offer.h"

#include <array>

namespace discovery {

std::string describeFailure(unsigned code) {
    // The codes of IEEE 802.1Q, from 1 on.
    static constexpr std::array<const char *, 19> texts{
        "too little bandwidth on the way",
        "a switch on the way has not enough resources",
        "too little bandwidth on the way for this traffic class",
        "another talker uses the same stream ID",
        "another stream uses the same destination address",
        "a stream of higher rank took its place",
        "its latency on the way has changed",
        "the egress port is not AVB capable",
        "the destination address does not fit into a switch's table, another would",
        "a switch on the way has no room for more reservations",
        "a switch on the way has no room for more multicast registrations",
        "a switch on the way can't store the destination address",
        "its priority belongs to no class of reserved streams",
        "its frames are too large for the medium",
        "too many ports of a switch take reserved streams in",
        "its announcement changed without a new stream ID",
        "its VLAN is blocked on the egress port",
        "the egress port sends without VLAN tags",
        "its priority is of another class on the other side of a link"};
    return code >= 1 && code <= texts.size() ? texts[code - 1] : "failure code " + std::to_string(code);
}

} // namespace discovery
