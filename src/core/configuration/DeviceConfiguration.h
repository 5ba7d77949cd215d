#pragma once

#include <optional>

#include <sonvex/IDeviceConfiguration.h>

#include "core/configuration/BufferConfiguration.h"

namespace sonvex {

/// What the packets of a device hold. Fixed at construction, so any thread may read it.
class DeviceConfiguration final : public ConfigurationData, public IDeviceConfiguration {
    Q_OBJECT

public:
    /// @param bufferConfiguration not owned; has to outlive this object
    DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration, unsigned int sampleSizeInBytes,
                        unsigned int amountOfChannels, unsigned int amountOfSamplesPerChannel);
    /// @param sampleRate in Hz
    DeviceConfiguration(std::string name, BufferConfiguration *bufferConfiguration, SampleFormat sampleFormat,
                        unsigned int amountOfChannels, unsigned int amountOfSamplesPerChannel, unsigned int sampleRate);

    std::string getName() const override;
    unsigned int getSampleSizeInBytes() const override { return sampleSizeInBytes; }
    unsigned int getAmountOfChannels() const override { return amountOfChannels; }
    unsigned int getAmountOfSamplesPerChannel() const override { return amountOfSamplesPerChannel; }
    std::string toString() const override;

    BufferConfiguration *getBufferConfiguration() const;
    /// Nothing for a device of which the width of a sample is all that is known: its frames' format is not looked at.
    std::optional<SampleFormat> getSampleFormat() const { return sampleFormat; }
    /// How samples are read: as integers where only their width is known, and that is 2 bytes. Nothing for other
    /// widths.
    std::optional<SampleFormat> getConvertedFormat() const { return convertedFormat; }
    /// In Hz.
    unsigned int getSampleRate() const { return sampleRate; }

private:
    BufferConfiguration *bufferConfiguration;
    unsigned int sampleSizeInBytes;
    unsigned int amountOfChannels;
    unsigned int amountOfSamplesPerChannel;
    std::optional<SampleFormat> sampleFormat;
    std::optional<SampleFormat> convertedFormat;
    unsigned int sampleRate = 48000;
};

} // namespace sonvex
