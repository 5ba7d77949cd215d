#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex {

/// How much audio the buffer of each channel holds, and how often it signals as a sample clock.
class SONVEX_EXPORT IBufferConfiguration {
public:
    /**
     * A buffer without clock signaling.
     * @param bufferSize in samples. A block of n samples stays whole while at most bufferSize - n more arrive.
     */
    static IBufferConfiguration &createInstance(std::string name, unsigned int bufferSize);

    /// @param clockSignalingSampleAmount samples between two ticks of the external clock; 0 switches it off.
    static IBufferConfiguration &createInstance(std::string name, unsigned int bufferSize,
                                                unsigned int clockSignalingSampleAmount);

    IBufferConfiguration();
    IBufferConfiguration(const IBufferConfiguration &);
    virtual ~IBufferConfiguration();
    IBufferConfiguration &operator=(const IBufferConfiguration &);

    /// In samples.
    virtual unsigned int getBufferSize() const = 0;
    /// In samples; 0 if the signaling is off.
    virtual unsigned int getClockSignalingSampleAmount() const = 0;
    /// Takes effect at once, also on running streams; a changed amount starts counting anew.
    virtual void setClockSignalingSampleAmount(unsigned int sampleAmount) = 0;
    virtual bool isClockSignalingActive() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
