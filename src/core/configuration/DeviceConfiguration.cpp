#include "core/configuration/DeviceConfiguration.h"

#include <utility>

#include "core/logging/Log.h"

namespace sonvex {

DeviceConfiguration::DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration,
                                         unsigned int sampleSizeInBytes, unsigned int amountOfChannels,
                                         unsigned int amountOfSamplesPerChannel)
    : ConfigurationData(std::move(name), nullptr), bufferConfiguration(bufferConfiguration),
      sampleSizeInBytes(sampleSizeInBytes), amountOfChannels(amountOfChannels),
      amountOfSamplesPerChannel(amountOfSamplesPerChannel) {
    logging::debug("sonvex::DeviceConfiguration::DeviceConfiguration", DataObjectBase::getName(), "Initialized!");
}

std::string DeviceConfiguration::getName() const {
    return DataObjectBase::getName();
}

unsigned int DeviceConfiguration::getSampleSizeInBytes() const {
    return sampleSizeInBytes;
}

unsigned int DeviceConfiguration::getAmountOfChannels() const {
    return amountOfChannels;
}

unsigned int DeviceConfiguration::getAmountOfSamplesPerChannel() const {
    return amountOfSamplesPerChannel;
}

std::string DeviceConfiguration::toString() const {
    return DataObjectBase::toString() + "\n\tDevice sample size in bytes: " + std::to_string(sampleSizeInBytes) +
           "\n\tDevice amount of channels: " + std::to_string(amountOfChannels) +
           "\n\tDevice amount of samples send per channel: " + std::to_string(amountOfSamplesPerChannel) +
           "Buffer configuration:\n" + bufferConfiguration->toString();
}

BufferConfiguration *DeviceConfiguration::getBufferConfiguration() const {
    return bufferConfiguration;
}

} // namespace sonvex
