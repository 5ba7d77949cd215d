#include "core/configuration/BufferConfiguration.h"

#include <utility>

#include "core/data/ChangeNotices.h"

namespace sonvex {

BufferConfiguration::BufferConfiguration(std::string name, unsigned int bufferSize,
                                         unsigned int clockSignalingSampleAmount)
    : ConfigurationData(std::move(name), nullptr), bufferSize(bufferSize),
      clockSignalingSampleAmount(clockSignalingSampleAmount) {}

unsigned int BufferConfiguration::getBufferSize() const {
    return bufferSize;
}

void BufferConfiguration::setClockSignalingSampleAmount(unsigned int sampleAmount) {
    if (clockSignalingSampleAmount.exchange(sampleAmount) != sampleAmount) {
        Q_EMIT configurationChanged(notices::signalingSampleAmountChanged);
    }
}

bool BufferConfiguration::isClockSignalingActive() const {
    return clockSignalingSampleAmount != 0;
}

std::string BufferConfiguration::toString() const {
    const unsigned int amount = clockSignalingSampleAmount;
    return DataObjectBase::toString() + "\n\tBuffer size: " + std::to_string(bufferSize) +
           (amount != 0 ? "\n\tClock signaling sample amount: " + std::to_string(amount)
                        : "\n\tBuffer clock signaling deactivated!");
}

} // namespace sonvex
