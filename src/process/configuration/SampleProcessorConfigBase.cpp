#include "process/configuration/SampleProcessorConfigBase.h"

#include <utility>

#include "core/data/ChangeNotices.h"
#include "core/logging/Log.h"

namespace process {

namespace notices = sonvex::notices;

namespace {

constexpr char constructorContext[] = "process::SampleProcessorConfigBase::SampleProcessorConfigBase";

} // namespace

SampleProcessorConfigBase::SampleProcessorConfigBase(std::string name, std::string processorType,
                                                     unsigned int sampleAmount)
    : ProcessorConfigBase(std::move(name), std::move(processorType)), refreshRate(defaultRefreshRate),
      clockType(notices::externalClock), sampleAmount(sampleAmount) {
    logging::debug(constructorContext, getName(), "Configuration created. External clock active");
}

SampleProcessorConfigBase::SampleProcessorConfigBase(std::string name, std::string processorType,
                                                     unsigned int sampleAmount, unsigned int refreshRate)
    : ProcessorConfigBase(std::move(name), std::move(processorType)), refreshRate(refreshRate),
      clockType(notices::internalClock), sampleAmount(sampleAmount) {
    if (refreshRate > 0) {
        logging::debug(constructorContext, getName(), "Configuration created. Internal clock active");
        return;
    }
    logging::warning(constructorContext, getName(),
                     "The given refresh rate is invalid! External clock will be activated!");
    clockType = notices::externalClock;
    this->refreshRate = defaultRefreshRate;
    logging::debug(constructorContext, getName(), "Configuration created. External clock active");
}

std::string SampleProcessorConfigBase::getProcessorType() const {
    return ProcessorConfigBase::getProcessorType();
}

std::string SampleProcessorConfigBase::toString() const {
    return "\tProcessor type: " + getProcessorType() + "\n\tRefresh rate: " + std::to_string(refreshRate) +
           "\n\tSample amount: " + std::to_string(sampleAmount) + "\n\tClock type: " + getClockType();
}

unsigned int SampleProcessorConfigBase::getRefreshRate() const {
    return refreshRate;
}

void SampleProcessorConfigBase::setRefreshRate(unsigned int newRate) {
    if (newRate == 0) {
        logging::warning("process::SampleProcessorConfigBase::setRefreshRate",
                         "Refresh rate equal to zero is not allowed! Refresh rate will be ignored!");
        return;
    }
    if (refreshRate.exchange(newRate) != newRate && isInternalClockActive()) {
        Q_EMIT configurationChanged(notices::clockRefreshRateChanged);
    }
}

bool SampleProcessorConfigBase::isInternalClockActive() const {
    const std::lock_guard<std::mutex> lock(clockTypeMutex);
    return clockType == notices::internalClock;
}

unsigned int SampleProcessorConfigBase::getSampleAmount() const {
    return sampleAmount;
}

void SampleProcessorConfigBase::setSampleAmount(unsigned int newAmount) {
    if (sampleAmount.exchange(newAmount) != newAmount) {
        Q_EMIT configurationChanged(notices::sampleAmountChanged);
    }
}

std::string SampleProcessorConfigBase::getClockType() const {
    const std::lock_guard<std::mutex> lock(clockTypeMutex);
    return clockType;
}

void SampleProcessorConfigBase::setClockType(std::string newType) {
    {
        const std::lock_guard<std::mutex> lock(clockTypeMutex);
        if (clockType == newType) {
            return;
        }
        clockType = newType;
    }
    Q_EMIT configurationChanged(newType);
}

void SampleProcessorConfigBase::publishConfiguration() {
    Q_EMIT configurationChanged(notices::sampleAmountChanged);
    Q_EMIT configurationChanged(notices::clockRefreshRateChanged);
    Q_EMIT configurationChanged(getClockType());
}

} // namespace process
