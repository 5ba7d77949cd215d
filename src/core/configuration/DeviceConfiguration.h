#pragma once

#include <sonvex/IDeviceConfiguration.h>

#include "core/configuration/BufferConfiguration.h"

namespace sonvex {

/// What the packets of a device hold. Fixed at construction, so any thread may read it.
class DeviceConfiguration : public ConfigurationData, public IDeviceConfiguration {
    Q_OBJECT

public:
    /// @param bufferConfiguration not owned; has to outlive this object
    DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration, unsigned int sampleSizeInBytes,
                        unsigned int amountOfChannels, unsigned int amountOfSamplesPerChannel);

    std::string getName() const override;
    unsigned int getSampleSizeInBytes() const override;
    unsigned int getAmountOfChannels() const override;
    unsigned int getAmountOfSamplesPerChannel() const override;
    std::string toString() const override;

    BufferConfiguration *getBufferConfiguration() const;

private:
    BufferConfiguration *bufferConfiguration;
    unsigned int sampleSizeInBytes;
    unsigned int amountOfChannels;
    unsigned int amountOfSamplesPerChannel;
};

} // namespace sonvex
