#include "process/SampleProcessorBase.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <QCoreApplication>
#include <QThread>

#include "avb/AvbAudioBuffer.h"
#include "core/data/ChangeNotices.h"
#include "core/logging/HeldLines.h"
#include "core/logging/Log.h"
#include "process/configuration/SampleProcessorConfigBase.h"

namespace process {

namespace notices = sonvex::notices;

SampleProcessorBase::SampleProcessorBase(const std::string &name, SampleProcessorConfigBase &config,
                                         avb::AvbAudioBuffer &audioBuffer, QObject *parent)
    : Processor(name, parent), audioBuffer(&audioBuffer), clock(name, nullptr), config(&config) {
    connect(this, SIGNAL(startInternalClock(int)), &clock, SLOT(start(int)));
    connect(this, SIGNAL(stopInternalClock()), &clock, SLOT(stop()));
    connect(&config, SIGNAL(configurationChanged(std::string)), this, SLOT(clockConfigurationChanged(std::string)));
    connect(&config, SIGNAL(configurationChanged(std::string)), this, SLOT(clockRefreshChanged(std::string)));
    connect(&config, SIGNAL(configurationChanged(std::string)), this, SLOT(sampleAmountChanged(std::string)));
}

SampleProcessorBase::~SampleProcessorBase() {
    if (isProcessingActive()) {
        Q_EMIT stopInternalClock();
    }
    Processor::stop();
}

std::string SampleProcessorBase::toString() const {
    return Processor::toString() + "\n" + config->toString() + "\n" + clock.toString();
}

void SampleProcessorBase::retire() {
    // The processor is destroyed on its own thread, where a running timer of this one could not be stopped.
    clock.retire();
}

void SampleProcessorBase::start() {
    const logging::HeldLines lines;
    const std::lock_guard<std::recursive_mutex> lock(transitionMutex);
    deliverClockRequests();
    if (config->isInternalClockActive() && !isProcessingActive()) {
        constexpr unsigned int longest = std::numeric_limits<int>::max();
        Q_EMIT startInternalClock(static_cast<int>(std::min(config->getRefreshRate(), longest)));
    }
    Processor::start();
}

void SampleProcessorBase::stop() {
    const logging::HeldLines lines;
    const std::lock_guard<std::recursive_mutex> lock(transitionMutex);
    deliverClockRequests();
    if (isProcessingActive()) {
        Q_EMIT stopInternalClock();
    }
    Processor::stop();
}

void SampleProcessorBase::progress() {
    logging::debug("process::SampleProcessorBase::progress", getName(),
                   "Processor active! To start the calculation please start the processor!");
}

void SampleProcessorBase::clockConfigurationChanged(const std::string &changedParameter) {
    if (changedParameter == notices::internalClock) {
        setInternalClock();
    } else if (changedParameter == notices::externalClock) {
        setExternalClock();
    }
}

void SampleProcessorBase::setInternalClock() {
    switchClock(&clock, SIGNAL(clock()), SLOT(calculate()));
    logging::debug("process::SampleProcessorBase::setInternalClock", getName(),
                   "Internal clock active! Refresh rate: ", config->getRefreshRate(), "ms");
}

void SampleProcessorBase::setExternalClock() {
    switchClock(audioBuffer, SIGNAL(bufferAmountAvailable(std::string, std::size_t)),
                SLOT(calculate(std::string, std::size_t)));
    logging::debug("process::SampleProcessorBase::setExternalClock", getName(), "External clock active!");
}

void SampleProcessorBase::deliverClockRequests() {
    // What the processor's thread asked of the timer is on its way here, and must not overtake what happens now.
    if (clock.thread() == QThread::currentThread()) {
        QCoreApplication::sendPostedEvents(&clock, QEvent::MetaCall);
    }
}

void SampleProcessorBase::switchClock(const QObject *sender, const char *signal, const char *slot) {
    const logging::HeldLines lines;
    const std::lock_guard<std::recursive_mutex> lock(transitionMutex);
    const bool wasActive = isProcessingActive();
    stop();
    disconnect(clockConnection);
    clockConnection = connect(sender, signal, this, slot);
    restartForClockChange(wasActive);
}

void SampleProcessorBase::restartForClockChange(bool wasActive) {
    if (wasActive) {
        logging::warning("process::SampleProcessorBase::restartForClockChange", getName(),
                         "Processor will be restarted for clock change to take affect!");
        start();
    }
}

void SampleProcessorBase::clockRefreshChanged(const std::string &changedParameter) {
    static constexpr char context[] = "process::SampleProcessorBase::clockRefreshChanged";
    if (changedParameter != notices::clockRefreshRateChanged) {
        return;
    }
    const logging::HeldLines lines;
    const std::lock_guard<std::recursive_mutex> lock(transitionMutex);
    if (isProcessingActive()) {
        logging::debug(context, getName(), "Processor active: Restarting processor to refresh clock rate change");
        stop();
        start();
    }
    logging::debug(context, getName(), "Clock refresh rate set to: ", config->getRefreshRate(), "ms");
}

void SampleProcessorBase::sampleAmountChanged(const std::string &changedParameter) {
    if (changedParameter != notices::sampleAmountChanged) {
        return;
    }
    logging::debug("process::SampleProcessorBase::sampleAmountChanged", getName(),
                   "Processed amount of samples: ", config->getSampleAmount());
}

void SampleProcessorBase::warnAboutMemory(const char *context) const {
    logging::warning(context, getName(), "Not enough memory for the sample amount: ", config->getSampleAmount());
}

std::vector<float> SampleProcessorBase::fetchConfiguredSamples(std::vector<float> storage) {
    const std::size_t amount = config->getSampleAmount();
    return config->isInternalClockActive() ? audioBuffer->fetchLatestSamples(amount, std::move(storage))
                                           : audioBuffer->fetchSignaledSamples(amount, std::move(storage));
}

} // namespace process
