#include "process/configuration/SpectrumConfig.h"

#include <limits>
#include <utility>

#include "core/data/ChangeNotices.h"
#include "core/logging/Log.h"
#include "process/configuration/convertConfiguration.h"

namespace process {

namespace notices = sonvex::notices;

SpectrumConfig::SpectrumConfig(std::string name, unsigned int sampleAmount, std::string processorType)
    : SampleProcessorConfig(std::move(name), std::move(processorType), sampleAmount) {
    SpectrumConfig::setFftOrder(defaultFftOrder);
}

SpectrumConfig::SpectrumConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate,
                               std::string processorType)
    : SampleProcessorConfig(std::move(name), std::move(processorType), sampleAmount, refreshRate) {
    SpectrumConfig::setFftOrder(defaultFftOrder);
}

SpectrumConfig &SpectrumConfig::convert(ProcessorConfigBase &config) {
    return convertConfiguration<SpectrumConfig>(config, typeName);
}

void SpectrumConfig::setSampleAmount(unsigned int /*sampleAmount*/) {
    logging::warning("process::SpectrumConfig::setSampleAmount",
                     "Sample amount ignored by internal sample amount auto detection!");
}

unsigned int SpectrumConfig::getFftOrder() const {
    return fftOrder;
}

void SpectrumConfig::setFftOrder(unsigned int order) {
    static constexpr char context[] = "process::SpectrumConfig::setFftOrder";
    if (order == fftOrder) {
        return;
    }
    if (order == 0) {
        logging::warning(context, "FFT order zero not supported! Please pass a valid order value");
        return;
    }
    if (order >= std::numeric_limits<unsigned int>::digits) {
        logging::warning(context, "FFT order not supported, its size exceeds 32 bits! Order ignored: ", order);
        return;
    }
    fftOrder = order;
    logging::debug(context, "FFT order is set to: ", order);
    fftSize = 1U << order;
    logging::debug(context, "FFT size is set to: ", 1U << order);
    SampleProcessorConfigBase::setSampleAmount(fftSize);
    Q_EMIT configurationChanged(notices::fftOrderChanged);
}

unsigned int SpectrumConfig::getFftSize() const {
    return fftSize;
}

void SpectrumConfig::setFftSize(unsigned int size) {
    const bool powerOfTwo = size != 0 && (size & (size - 1)) == 0;
    if (!powerOfTwo) {
        logging::warning("process::SpectrumConfig::isValuePowerOfTwo", "Value is no power of two: ", size);
        logging::warning("process::SpectrumConfig::setFftSize",
                         "Invalid FFT size set! Size ignored: ", std::to_string(size));
        return;
    }
    unsigned int order = 0;
    while (size >> order != 1) {
        ++order;
    }
    setFftOrder(order);
}

void SpectrumConfig::setMovingAverageActive(bool active) {
    if (movingAverageActive.exchange(active) != active) {
        Q_EMIT configurationChanged(notices::movingAverageActivityChanged);
    }
}

bool SpectrumConfig::isMovingAverageActive() const {
    return movingAverageActive;
}

void SpectrumConfig::setMovingAverageWindowSize(unsigned int size) {
    if (movingAverageWindowSize.exchange(size) != size) {
        logging::debug("process::SpectrumConfig::setMovingAverageWindowSize",
                       "Moving average window Size changed to: ", size);
    }
    // Announced in any case: of size and length the one that was set last counts.
    Q_EMIT configurationChanged(notices::movingAverageWindowSizeChanged);
}

unsigned int SpectrumConfig::getMovingAverageWindowSize() const {
    return movingAverageWindowSize;
}

void SpectrumConfig::setMovingAverageWindowLength(unsigned int milliseconds) {
    if (movingAverageWindowLength.exchange(milliseconds) != milliseconds) {
        logging::debug("process::SpectrumConfig::setMovingAverageWindowLength",
                       "Window Size changed to: ", milliseconds);
    }
    Q_EMIT configurationChanged(notices::movingAverageWindowLengthChanged);
}

unsigned int SpectrumConfig::getMovingAverageWindowLength() const {
    return movingAverageWindowLength;
}

std::string SpectrumConfig::toString() const {
    return getProcessorType() + ": " + getName() + "\n" + SampleProcessorConfigBase::toString() +
           "\n\tFFT order: " + std::to_string(fftOrder);
}

void SpectrumConfig::publishConfiguration() {
    // The length comes before the size, so that the size wins.
    Q_EMIT configurationChanged(notices::fftOrderChanged);
    Q_EMIT configurationChanged(notices::movingAverageWindowLengthChanged);
    Q_EMIT configurationChanged(notices::movingAverageWindowSizeChanged);
    Q_EMIT configurationChanged(notices::movingAverageActivityChanged);
    SampleProcessorConfigBase::publishConfiguration();
}

float SpectrumConfig::getPowerScaleFactor() const {
    return powerScaleFactor;
}

} // namespace process
