#pragma once

#include <atomic>

#include <sonvex/IBufferConfiguration.h>

#include "core/data/ConfigurationData.h"

namespace sonvex {

/**
 * How much audio a channel's buffer holds, and how often it signals.
 * The signaling amount is set on the host's thread and read on the capture thread, hence atomic.
 */
class BufferConfiguration final : public ConfigurationData, public IBufferConfiguration {
    Q_OBJECT

public:
    BufferConfiguration(std::string name, unsigned int bufferSize, unsigned int clockSignalingSampleAmount = 0);

    unsigned int getBufferSize() const override;
    unsigned int getClockSignalingSampleAmount() const override { return clockSignalingSampleAmount; }
    void setClockSignalingSampleAmount(unsigned int sampleAmount) override;
    bool isClockSignalingActive() const override;
    std::string toString() const override;

private:
    unsigned int bufferSize;
    std::atomic<unsigned int> clockSignalingSampleAmount;
};

} // namespace sonvex
