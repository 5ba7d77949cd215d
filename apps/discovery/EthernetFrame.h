#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "common/MacAddress.h"
#include "discovery/Bytes.h"

namespace discovery {

/// Of IEEE 802.1Q.
struct VlanTag {
    unsigned id;       ///< 0 for a tag that says the priority only
    unsigned priority; ///< 0 to 7

    bool operator==(const VlanTag &other) const { return id == other.id && priority == other.priority; }
};

/// An Ethernet frame without a tag or with one.
struct EthernetFrame {
    static constexpr std::uint16_t avtp = 0x22f0;
    static constexpr std::uint16_t reservation = 0x22ea;

    /// What keeps a frame from being read.
    enum class Flaw { none, incomplete, severalTags };

    Flaw flaw = Flaw::none;
    common::MacAddress destination{};
    common::MacAddress source{};
    std::optional<VlanTag> tag;
    std::uint16_t etherType = 0;
    Bytes payload;            ///< as much of it as was captured
    std::size_t wireSize = 0; ///< of the payload, padding included

    /// @param wireSize of the whole frame, which may have been longer than what was captured
    EthernetFrame(Bytes frame, std::size_t wireSize);
};

} // namespace discovery
