#pragma once

#include <string>

#include <sonvex/INetworkDeviceInfo.h>
#include <sonvex/export.h>

namespace sonvex {

/// The network adapters of the machine, as the capture library sees them. Scanned once when the library loads.
class SONVEX_EXPORT INetworkDeviceManager {
public:
    /// The process's only instance; every call gives the same object.
    static INetworkDeviceManager &createInstance();

    INetworkDeviceManager();
    INetworkDeviceManager(const INetworkDeviceManager &);
    virtual ~INetworkDeviceManager();
    INetworkDeviceManager &operator=(const INetworkDeviceManager &);

    /**
     * Scans again. Every INetworkDeviceInfo reference from before becomes invalid, so stream configurations that
     * use one must be gone by then.
     * @return true if the scan worked and found no adapter at all; false otherwise
     */
    virtual bool scanDevices() = 0;
    virtual unsigned int getDeviceCount() const = 0;
    /**
     * @param index from 1 to getDeviceCount()
     * @throws exceptions::ResourceNotAvailable for any other index
     */
    virtual INetworkDeviceInfo &getDeviceInfo(unsigned int index) = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
