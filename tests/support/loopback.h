#pragma once

#include <stdexcept>

#include <sonvex/sonvex.h>

namespace support {

inline sonvex::INetworkDeviceInfo &loopback() {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    for (unsigned index = 1; index <= manager.getDeviceCount(); ++index) {
        if (manager.getDeviceInfo(index).getSystemDeviceName() == "lo") {
            return manager.getDeviceInfo(index);
        }
    }
    throw std::runtime_error("no loopback adapter");
}

} // namespace support
