#include "process/averaging/MovingAverage.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

#include <QCoreApplication>

#include "core/configuration/BufferConfiguration.h"
#include "core/data/ChangeNotices.h"
#include "core/logging/HeldLines.h"
#include "core/logging/Log.h"
#include "kernels/kernels.h"
#include "process/configuration/SpectrumConfig.h"

namespace process::averaging {

namespace notices = sonvex::notices;

namespace {

constexpr unsigned int cyclesBetweenFullMeans = 100;
constexpr unsigned int samplesPerMillisecond = 48;

} // namespace

MovingAverage::MovingAverage(std::string name, SpectrumConfig *config, sonvex::BufferConfiguration *bufferConfiguration,
                             QObject *parent)
    : QObject(parent), name(std::move(name)), config(config), bufferConfiguration(bufferConfiguration) {
    for (const char *const slot :
         {SLOT(movingAverageActivityChanged(std::string)), SLOT(windowSizeChanged(std::string)),
          SLOT(windowLengthChanged(std::string)), SLOT(clockConfigurationChanged(std::string)),
          SLOT(clockRefreshChanged(std::string)), SLOT(signalingSampleAmountChanged(std::string))}) {
        connections.push_back(connect(config, SIGNAL(configurationChanged(std::string)), this, slot));
    }
    logging::debug("process::averaging::MovingAverage::MovingAverage", this->name, "Initialized!");
}

void MovingAverage::retire() {
    for (const QMetaObject::Connection &connection : connections) {
        disconnect(connection);
    }
    QCoreApplication::removePostedEvents(this); // notices from other threads that are on their way
}

std::vector<double> MovingAverage::calculate(std::vector<double> input) {
    const logging::HeldLines lines;
    const std::lock_guard<std::mutex> lock(mutex);
    if (!active || windowSize <= 1) {
        return input;
    }
    if (ringIndex >= windowSize) {
        ringIndex = 0;
    }
    setVectorLength(input.size());
    if (cycleCounter < cyclesBetweenFullMeans) {
        performanceOptimizedMovingAverage(input);
        ++cycleCounter;
    } else {
        simpleMovingAverage(input);
        cycleCounter = 0;
    }
    return input;
}

void MovingAverage::performanceOptimizedMovingAverage(std::vector<double> &input) {
    static constexpr char context[] = "process::averaging::MovingAverage::performanceOptimizedMovingAverage";
    if (isFilling() && !addZeros(context)) {
        input = average;
        return;
    }
    std::vector<double> &oldest = ringBuffers[ringIndex];
    sonvexMoveAverage_64f(input.data(), oldest.data(), average.data(), windowSize, static_cast<int>(vectorLength));
    oldest.swap(input);
    ++ringIndex;
}

void MovingAverage::simpleMovingAverage(std::vector<double> &input) {
    static constexpr char context[] = "process::averaging::MovingAverage::simpleMovingAverage";
    if (isFilling() && !addZeros(context)) {
        input = average;
        return;
    }
    ringBuffers[ringIndex].swap(input);
    ++ringIndex;
    std::fill(average.begin(), average.end(), 0.0);
    for (const std::vector<double> &values : ringBuffers) {
        for (std::size_t i = 0; i < vectorLength; ++i) {
            average[i] += values[i];
        }
    }
    for (double &value : average) {
        value /= windowSize;
    }
    input = average;
}

bool MovingAverage::addZeros(const char *context) {
    try {
        ringBuffers.emplace_back(vectorLength);
    } catch (const std::exception &error) {
        logging::warning(context, name, "Ring buffer index error: ", error.what());
        return false;
    }
    return true;
}

void MovingAverage::resetBuffers() {
    std::fill(average.begin(), average.end(), 0.0);
    ringBuffers.clear();
    ringIndex = 0;
}

void MovingAverage::setVectorLength(std::size_t length) {
    if (length == vectorLength) {
        return;
    }
    average = std::vector<double>(length); // first: without the memory for it, nothing has changed
    vectorLength = length;
    logging::debug("process::averaging::MovingAverage::setVectorLength", name,
                   "Moving window vector length set to: ", length);
    resetBuffers();
}

void MovingAverage::setWindowSize(unsigned int size) {
    static constexpr char context[] = "process::averaging::MovingAverage::setWindowSize";
    if (size != windowSize) {
        if (size > 1) {
            windowSize = size;
            logging::debug(context, name, "Moving average window size set to: ", size);
        } else {
            windowSize = 1;
            logging::warning(context, name, "Moving average window size is too small! Filter deactivated");
        }
        resetBuffers();
    }
    updateWindowLength();
}

void MovingAverage::setWindowLength(std::uint64_t milliseconds) {
    if (milliseconds != windowLength) {
        windowLength = milliseconds;
        logging::debug("process::averaging::MovingAverage::setWindowLength", name,
                       "Moving window length set to: ", windowLength, " ms");
        updateWindowSize();
    }
}

bool MovingAverage::updateRefreshInterval(const char *context) {
    const unsigned int interval = config->isInternalClockActive()
                                      ? config->getRefreshRate()
                                      : bufferConfiguration->getClockSignalingSampleAmount() / samplesPerMillisecond;
    if (interval == 0) {
        logging::warning(context, name, "Moving window refresh interval of zero not allowed!");
        return false;
    }
    if (interval != refreshInterval) {
        refreshInterval = interval;
        logging::debug(context, name, "Moving window refresh interval set to: ", interval, " ms");
    }
    return true;
}

void MovingAverage::updateWindowLength() {
    if (updateRefreshInterval("process::averaging::MovingAverage::updateWindowLength")) {
        windowLength = std::uint64_t{windowSize} * refreshInterval;
    }
}

void MovingAverage::updateWindowSize() {
    if (updateRefreshInterval("process::averaging::MovingAverage::updateWindowSize")) {
        constexpr std::uint64_t largest = std::numeric_limits<unsigned int>::max();
        setWindowSize(static_cast<unsigned int>(std::min(windowLength / refreshInterval, largest)));
    }
}

void MovingAverage::movingAverageActivityChanged(std::string changedParameter) {
    if (changedParameter != notices::movingAverageActivityChanged) {
        return;
    }
    const logging::HeldLines lines;
    const std::lock_guard<std::mutex> lock(mutex);
    active = config->isMovingAverageActive();
    logging::debug("process::averaging::MovingAverage::movingAverageActivityChanged", name, "Moving Average ",
                   active ? "activated" : "deactivated");
    if (!active) {
        resetBuffers();
    }
}

void MovingAverage::windowSizeChanged(std::string changedParameter) {
    if (changedParameter == notices::movingAverageWindowSizeChanged) {
        const logging::HeldLines lines;
        const std::lock_guard<std::mutex> lock(mutex);
        setWindowSize(config->getMovingAverageWindowSize());
    }
}

void MovingAverage::windowLengthChanged(std::string changedParameter) {
    if (changedParameter == notices::movingAverageWindowLengthChanged) {
        const logging::HeldLines lines;
        const std::lock_guard<std::mutex> lock(mutex);
        setWindowLength(config->getMovingAverageWindowLength());
    }
}

void MovingAverage::clockConfigurationChanged(std::string changedParameter) {
    if (changedParameter == notices::internalClock || changedParameter == notices::externalClock) {
        const logging::HeldLines lines;
        const std::lock_guard<std::mutex> lock(mutex);
        logging::debug("process::averaging::MovingAverage::clockConfigurationChanged", name, "Audio clock changed");
        updateWindowSize();
    }
}

void MovingAverage::clockRefreshChanged(std::string changedParameter) {
    if (config->isInternalClockActive() && changedParameter == notices::clockRefreshRateChanged) {
        const logging::HeldLines lines;
        const std::lock_guard<std::mutex> lock(mutex);
        logging::debug("process::averaging::MovingAverage::clockRefreshChanged", name,
                       "Internal audio clock refresh rate changed");
        updateWindowSize();
    }
}

void MovingAverage::signalingSampleAmountChanged(std::string changedParameter) {
    if (!config->isInternalClockActive() && changedParameter == notices::sampleAmountChanged) {
        const logging::HeldLines lines;
        const std::lock_guard<std::mutex> lock(mutex);
        logging::debug("process::averaging::MovingAverage::signalingSampleAmountChanged", name,
                       "External audio clock signaling sample amount changed");
        updateWindowSize();
    }
}

} // namespace process::averaging
