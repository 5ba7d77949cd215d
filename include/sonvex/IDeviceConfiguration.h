#pragma once

#include <string>

#include <sonvex/SampleFormat.h>
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
    /**
     * A device whose frames also have to declare their format and rate: what declares another one is refused and never
     * misread.
     *
     * @param amountOfChannels 1 to 255; frames with fewer channels are accepted too
     * @param amountOfSamplesPerChannel samples of each channel in a packet; 0 takes what the length of each frame says
     * @param sampleRate in Hz. Frames that leave it to the user pass as well. Waveforms and spectra are of samples,
     * whatever their rate; sound levels are of 48000 alone: no other rate has a processor for them.
     * @throws std::bad_cast for a buffer configuration that is not the library's own
     */
    static IDeviceConfiguration &createInstance(std::string name, IBufferConfiguration &bufferConfiguration,
                                                SampleFormat sampleFormat, unsigned int amountOfChannels,
                                                unsigned int amountOfSamplesPerChannel,
                                                unsigned int sampleRate = 48000);

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
