#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex {

/// One network adapter of the machine.
class SONVEX_EXPORT INetworkDeviceInfo {
public:
    INetworkDeviceInfo();
    INetworkDeviceInfo(const INetworkDeviceInfo &);
    virtual ~INetworkDeviceInfo();
    INetworkDeviceInfo &operator=(const INetworkDeviceInfo &);

    /// The position in the scan, from 1. It is no identity: another scan may number differently.
    virtual int getSystemDeviceNumber() const = 0;
    /// The system's name, for example "eth0".
    virtual std::string getSystemDeviceName() const = 0;
    /// "Not available" if the system has none.
    virtual std::string getSystemDeviceDescription() const = 0;
    /// Whether the number is 0 or more.
    virtual bool isValid() const = 0;
    virtual bool hasNoDescription() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
