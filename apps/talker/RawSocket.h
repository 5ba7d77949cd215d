#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/FileDescriptor.h"
#include "common/MacAddress.h"
#include "talker/FrameBatch.h"
#include "talker/VlanTag.h"

namespace talker {

/// Sends complete Ethernet frames on one adapter, and knows what the adapter can take.
class RawSocket {
public:
    /// @throws common::Refusal for an unknown or unsuitable adapter and for missing permission
    explicit RawSocket(const std::string &device);

    const std::string &getDevice() const { return device; }
    /// Bytes that a frame may carry behind its Ethernet header, and behind its tag if it has one.
    std::size_t getMtu(bool tagged) const { return tagged && !takesTagsBeside ? mtu - VlanTag::size : mtu; }
    /// @pre the frame has an Ethernet header
    bool takes(const std::uint8_t *bytes, std::size_t size) const;
    /// All zero on a loopback adapter.
    const common::MacAddress &getAddress() const { return address; }

    /// Waits while too many frames are on their way to the adapter.
    /// @throws std::system_error if the frame cannot be sent
    void send(const std::uint8_t *bytes, std::size_t size);
    /// The same for several frames, with as few calls of the system as it takes.
    /// @param sent counts those that went out, also if one fails
    void send(FrameBatch &batch, std::uint64_t &sent);

private:
    /// @throws std::system_error for what errno says
    [[noreturn]] void fail() const;

    std::string device;
    common::FileDescriptor socket;
    std::size_t mtu = 0;
    bool takesTagsBeside = false; ///< a tag does not count for the MTU
    common::MacAddress address = {};
};

} // namespace talker
