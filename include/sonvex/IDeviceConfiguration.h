#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex {

class IBufferConfiguration;

/// What the packets of a sending device hold.
class SONVEX_EXPORT IDeviceConfiguration {
public:
    /**
     * @param sampleSizeInBytes width of a sample on the wire; only 2 can be converted
     * @param amountOfChannels 1 to 255; frames with fewer channels are accepted too
     * @param amountOfSamplesPerChannel samples of each channel in a packet
     * @throws std::bad_cast for a buffer configuration that is not the library's own
     */
    static IDeviceConfiguration &createInstance(std::string name, IBufferConfiguration &bufferConfiguration,
                                                unsigned int sampleSizeInBytes, unsigned int amountOfChannels,
                                                unsigned int amountOfSamplesPerChannel);

    IDeviceConfiguration();
    IDeviceConfiguration(const IDeviceConfiguration &);
    virtual ~IDeviceConfiguration();
    IDeviceConfiguration &operator=(const IDeviceConfiguration &);

    virtual std::string getName() const = 0;
    virtual unsigned int getSampleSizeInBytes() const = 0;
    virtual unsigned int getAmountOfChannels() const = 0;
    virtual unsigned int getAmountOfSamplesPerChannel() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
