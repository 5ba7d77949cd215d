#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace talker {

/// An 802.1Q tag of a frame.
struct VlanTag {
    static constexpr std::size_t size = 4; ///< in the frame, behind the addresses
    static constexpr std::uint16_t protocol = 0x8100;

    std::uint16_t id;      ///< 0: the frame has a priority alone
    std::uint8_t priority; ///< 3 is class A's by default

    /// @param text VID or VID:PRIORITY
    /// @param what names the option in the refusal of anything else
    static VlanTag parse(const std::string &text, const std::string &what);
};

} // namespace talker
