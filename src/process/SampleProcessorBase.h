#pragma once

#include <cstddef>
#include <mutex>
#include <new>
#include <stdexcept>
#include <vector>

#include "process/InternalClock.h"
#include "process/Processor.h"

namespace avb {
class AvbAudioBuffer;
} // namespace avb

namespace process {

class SampleProcessorConfigBase;

/**
 * Decides when a processor of audio samples calculates: at each tick of a timer of its own (the internal clock), or
 * each time the channel's buffer signals that a block is complete (the external clock). The configuration chooses, also
 * while the processor runs.
 *
 * Threads: calculate() and the change notices run on the processor's thread, one after the other. The timer stays on
 * the thread that made the processor, the owner thread; its ticks and the buffer's signals cross over as queued calls.
 * start() and stop() run on the caller's thread, end() and retire() on the owner thread. A notice restarts a running
 * processor on its own thread; transitionMutex makes that one step for the others, so that a stop() meanwhile is the
 * last word. What is logged under it goes out once it is free.
 *
 * A derived class declares calculate as a slot again, with the same defaults, returns from it at once unless
 * isProcessingActive(), and lets its creator call publishConfiguration() on the configuration: that makes the clock
 * connection.
 */
class SampleProcessorBase : public Processor {
    Q_OBJECT

public:
    /// @param config, @param audioBuffer not owned; have to outlive the processor's last calculation
    SampleProcessorBase(const std::string &name, SampleProcessorConfigBase &config, avb::AvbAudioBuffer &audioBuffer,
                        QObject *parent);
    ~SampleProcessorBase() override;

    std::string toString() const override;
    void retire() override;

public Q_SLOTS:
    void start() override;
    void stop() override;

Q_SIGNALS:
    void startInternalClock(int msec);
    void stopInternalClock();

protected Q_SLOTS:
    void progress() override;
    /// @param clockName "InternalClock", or the name of the buffer that signals
    /// @param sampleAmount the buffer's signaling amount, or 0
    virtual void calculate(const std::string &clockName = "InternalClock", std::size_t sampleAmount = 0) = 0;
    virtual void clockConfigurationChanged(const std::string &changedParameter);
    virtual void clockRefreshChanged(const std::string &changedParameter);
    virtual void sampleAmountChanged(const std::string &changedParameter);

protected:
    /// The configured amount of samples, the oldest first: the newest ones on the internal clock, those up to the
    /// latest signal on the external one. @param storage an earlier block that is no longer needed
    std::vector<float> fetchConfiguredSamples(std::vector<float> storage = {});

    /// Runs what needs memory in amounts that the host's numbers decide on: where there is none, the result is left
    /// out, with a warning. @return whether there was enough
    template <class Work>
    bool withMemory(const char *context, Work &&work) {
        try {
            work();
            return true;
        } catch (const std::bad_alloc &) {
        } catch (const std::length_error &) {
        }
        warnAboutMemory(context);
        return false;
    }

    avb::AvbAudioBuffer *audioBuffer;
    InternalClock clock;
    SampleProcessorConfigBase *config;

private:
    void setInternalClock();
    void setExternalClock();
    void switchClock(const QObject *sender, const char *signal, const char *slot);
    void restartForClockChange(bool wasActive);
    void deliverClockRequests();
    void warnAboutMemory(const char *context) const;

    std::recursive_mutex transitionMutex;    ///< held while the flag and the timer change
    QMetaObject::Connection clockConnection; ///< the one connection that leads to calculate()
};

} // namespace process
