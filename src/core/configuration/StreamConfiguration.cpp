#include "core/configuration/StreamConfiguration.h"

#include <utility>

namespace sonvex {

StreamConfiguration::StreamConfiguration(std::string name, std::string deviceMacAddress,
                                         pcapplus::PcapDeviceInfo *networkDeviceInfo,
                                         DeviceConfiguration *deviceConfiguration)
    : ConfigurationData(std::move(name), nullptr), deviceMacAddress(std::move(deviceMacAddress)),
      networkDeviceInfo(networkDeviceInfo), deviceConfiguration(deviceConfiguration) {}

StreamConfiguration::StreamConfiguration(std::string name, const StreamId &streamId,
                                         pcapplus::PcapDeviceInfo *networkDeviceInfo,
                                         DeviceConfiguration *deviceConfiguration)
    : StreamConfiguration(std::move(name), streamId.toString(), networkDeviceInfo, deviceConfiguration) {
    this->streamId = streamId;
}

std::string StreamConfiguration::getDeviceMacAddress() const {
    return deviceMacAddress;
}

DeviceConfiguration &StreamConfiguration::getDeviceConfiguration() const {
    return *deviceConfiguration;
}

std::string StreamConfiguration::toString() const {
    return DataObjectBase::toString() + (streamId ? " Stream ID: " : " Device MAC address: ") + deviceMacAddress +
           " Detailed device configuration:\n" + deviceConfiguration->toString() + "\n" +
           " Detailed network device informations: \n" + networkDeviceInfo->toString();
}

std::string StreamConfiguration::getName() const {
    return DataObjectBase::getName();
}

pcapplus::PcapDeviceInfo *StreamConfiguration::getNetworkDeviceInfo() const {
    return networkDeviceInfo;
}

} // namespace sonvex
