#include "core/configuration/DeviceConfiguration.h"

#include <utility>

#include "core/logging/Log.h"

namespace sonvex {

namespace {

struct FormatTraits {
    unsigned int bytes;
    const char *name;
};

FormatTraits traitsOf(SampleFormat format) {
    switch (format) {
    case SampleFormat::Int16:
        return {2, "16 bit integer"};
    case SampleFormat::Int24:
        return {3, "24 bit integer"};
    case SampleFormat::Int32:
        return {4, "32 bit integer"};
    case SampleFormat::Float32:
        return {4, "32 bit float"};
    }
    return {0, "none"}; // a number that stands for no format: no frame declares it
}

} // namespace

DeviceConfiguration::DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration,
                                         unsigned int sampleSizeInBytes, unsigned int amountOfChannels,
                                         unsigned int amountOfSamplesPerChannel)
    : ConfigurationData(std::move(name), nullptr), bufferConfiguration(bufferConfiguration),
      sampleSizeInBytes(sampleSizeInBytes), amountOfChannels(amountOfChannels),
      amountOfSamplesPerChannel(amountOfSamplesPerChannel),
      convertedFormat(sampleSizeInBytes == 2 ? std::optional(SampleFormat::Int16) : std::nullopt) {
    logging::debug("sonvex::DeviceConfiguration::DeviceConfiguration", DataObjectBase::getName(), "Initialized!");
}

DeviceConfiguration::DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration,
                                         SampleFormat sampleFormat, unsigned int amountOfChannels,
                                         unsigned int amountOfSamplesPerChannel, unsigned int sampleRate)
    : DeviceConfiguration(std::move(name), bufferConfiguration, traitsOf(sampleFormat).bytes, amountOfChannels,
                          amountOfSamplesPerChannel) {
    this->sampleFormat = convertedFormat = sampleFormat;
    this->sampleRate = sampleRate;
}

std::string DeviceConfiguration::getName() const {
    return DataObjectBase::getName();
}

std::string DeviceConfiguration::toString() const {
    const std::string format = sampleFormat ? std::string("\n\tDevice sample format: ") + traitsOf(*sampleFormat).name +
                                                  "\n\tDevice sample rate: " + std::to_string(sampleRate)
                                            : std::string();
    return DataObjectBase::toString() + "\n\tDevice sample size in bytes: " + std::to_string(sampleSizeInBytes) +
           format + "\n\tDevice amount of channels: " + std::to_string(amountOfChannels) +
           "\n\tDevice amount of samples send per channel: " + std::to_string(amountOfSamplesPerChannel) +
           "Buffer configuration:\n" + bufferConfiguration->toString();
}

BufferConfiguration *DeviceConfiguration::getBufferConfiguration() const {
    return bufferConfiguration;
}

} // namespace sonvex
