#include "core/configuration/ProcessConfiguration.h"

#include <utility>

#include "core/logging/Log.h"

namespace sonvex {

ProcessConfiguration::ProcessConfiguration(std::string name, process::ProcessorConfigBase *processorConfig,
                                           std::string deviceMacAddress, unsigned char channelNumber)
    : ConfigurationData(std::move(name), nullptr), processorConfig(processorConfig),
      deviceMacAddress(std::move(deviceMacAddress)), channelNumber(channelNumber) {
    logging::debug("sonvex::ProcessConfiguration::ProcessConfiguration", DataObjectBase::getName(), "Object CREATED");
}

std::string ProcessConfiguration::getName() const {
    return DataObjectBase::getName();
}

process::ProcessorConfigBase &ProcessConfiguration::getProcessorConfig() const {
    return *processorConfig;
}

std::string ProcessConfiguration::getDeviceMacAddress() const {
    return deviceMacAddress;
}

unsigned char ProcessConfiguration::getChannelNumber() const {
    return channelNumber;
}

std::string ProcessConfiguration::toString() const {
    return "ProcessConfiguration: " + getName() + "\nReceives stream from device: " + deviceMacAddress +
           "\nCalculates sample data from audio channel: " + std::to_string(channelNumber);
}

} // namespace sonvex
