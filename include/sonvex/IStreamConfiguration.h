#pragma once

#include <string>

#include <sonvex/StreamId.h>
#include <sonvex/export.h>

namespace sonvex {

class IDeviceConfiguration;
class INetworkDeviceInfo;

/// Which device, or which stream of a device, is received on which adapter.
class SONVEX_EXPORT IStreamConfiguration {
public:
    /**
     * @param deviceMacAddress the stream's source address as 12 hexadecimal digits without separators
     * @param networkDeviceInfo the adapter; the host must not scan again while this configuration lives
     * @throws std::bad_cast for a device info or configuration that is not the library's own
     */
    static IStreamConfiguration &createInstance(std::string name, std::string deviceMacAddress,
                                                INetworkDeviceInfo &networkDeviceInfo,
                                                IDeviceConfiguration &deviceConfiguration);
    /**
     * One of the streams that a device may send: the frames that carry @p streamId and mark it as valid, whatever
     * address they come from. The text of the ID stands wherever an address would, for processors too.
     *
     * @param networkDeviceInfo the adapter; the host must not scan again while this configuration lives
     * @throws std::bad_cast for a device info or configuration that is not the library's own
     */
    static IStreamConfiguration &createInstance(std::string name, const StreamId &streamId,
                                                INetworkDeviceInfo &networkDeviceInfo,
                                                IDeviceConfiguration &deviceConfiguration);

    IStreamConfiguration();
    IStreamConfiguration(const IStreamConfiguration &);
    virtual ~IStreamConfiguration();
    IStreamConfiguration &operator=(const IStreamConfiguration &);

    /// Or the stream ID, as its text.
    virtual std::string getDeviceMacAddress() const = 0;
    virtual IDeviceConfiguration &getDeviceConfiguration() const = 0;
    virtual std::string toString() const = 0;
    virtual std::string getName() const = 0;
};

} // namespace sonvex
