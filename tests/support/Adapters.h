#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "pcapplus/PcapDeviceManager.h"
#include "talker/RawSocket.h"

namespace support {

/// An adapter of the test's own network, as the library lists it.
inline pcapplus::PcapDeviceInfo adapter(const std::string &name) {
    pcapplus::PcapDeviceManager manager;
    for (unsigned index = 1; index <= manager.getDeviceCount(); ++index) {
        if (manager.getDeviceInfo(index).getSystemDeviceName() == name) {
            return manager.getDeviceInfo(index);
        }
    }
    throw std::runtime_error("no adapter " + name);
}

/// An adapter that the system does not have.
inline pcapplus::PcapDeviceInfo missingAdapter() {
    return {99, "missing0", "A missing adapter"};
}

inline void send(talker::RawSocket &socket, const std::vector<std::uint8_t> &frame) {
    socket.send(frame.data(), frame.size());
}

} // namespace support
