#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/FileDescriptor.h"
#include "common/MacAddress.h"

namespace talker {

/// Sends complete Ethernet frames on one adapter, and knows what the adapter can take.
class RawSocket {
public:
    /// @throws common::Refusal for an unknown or unsuitable adapter and for missing permission
    explicit RawSocket(const std::string &device);

    const std::string &getDevice() const { return device; }
    /// Bytes that a frame may carry behind its Ethernet header.
    std::size_t getMtu() const { return mtu; }
    /// All zero on a loopback adapter.
    const common::MacAddress &getAddress() const { return address; }

    /// Waits while too many frames are on their way to the adapter.
    /// @throws std::system_error if the frame cannot be sent
    void send(const std::uint8_t *bytes, std::size_t size);

private:
    std::string device;
    common::FileDescriptor socket;
    std::size_t mtu = 0;
    common::MacAddress address = {};
};

} // namespace talker
