#pragma once

#include <optional>

#include <sonvex/IStreamConfiguration.h>

#include "core/configuration/DeviceConfiguration.h"
#include "pcapplus/PcapDeviceInfo.h"

namespace sonvex {

/// Which device, or which of its streams, is received on which adapter. Fixed at construction.
class StreamConfiguration : public ConfigurationData, public IStreamConfiguration {
    Q_OBJECT

public:
    /// @param networkDeviceInfo, @param deviceConfiguration not owned; have to outlive this object
    StreamConfiguration(std::string name, std::string deviceMacAddress, pcapplus::PcapDeviceInfo *networkDeviceInfo,
                        DeviceConfiguration *deviceConfiguration);
    StreamConfiguration(std::string name, const StreamId &streamId, pcapplus::PcapDeviceInfo *networkDeviceInfo,
                        DeviceConfiguration *deviceConfiguration);

    std::string getDeviceMacAddress() const override;
    DeviceConfiguration &getDeviceConfiguration() const override;
    std::string toString() const override;
    std::string getName() const override;

    pcapplus::PcapDeviceInfo *getNetworkDeviceInfo() const;
    /// What frames are told by, instead of their source address.
    const std::optional<StreamId> &getStreamId() const { return streamId; }

private:
    std::string deviceMacAddress;
    pcapplus::PcapDeviceInfo *networkDeviceInfo;
    DeviceConfiguration *deviceConfiguration;
    std::optional<StreamId> streamId;
};

} // namespace sonvex
