#pragma once

#include <stdexcept>
#include <string>

#include <sonvex/sonvex.h>

namespace support {

/// As the latest scan of the adapters has found it.
inline sonvex::INetworkDeviceInfo &networkDevice(const std::string &name) {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    for (unsigned index = 1; index <= manager.getDeviceCount(); ++index) {
        if (manager.getDeviceInfo(index).getSystemDeviceName() == name) {
            return manager.getDeviceInfo(index);
        }
    }
    throw std::runtime_error("no adapter " + name);
}

inline sonvex::INetworkDeviceInfo &loopback() {
    return networkDevice("lo");
}

} // namespace support
