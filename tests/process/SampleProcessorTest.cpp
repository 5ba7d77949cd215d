#include <functional>

#include <QThread>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/SampleProcessorBase.h"
#include "process/configuration/WaveformConfig.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/capture.h"
#include "support/waitFor.h"

namespace {

using Lines = std::vector<std::string>;
using Ticks = std::vector<std::string>;

const std::string internalClock = "Internal clock";
const std::string externalClock = "External clock";

/// Delivers, as the name of a result, each call of its calculation: clock, amount and whether the thread is its own.
class ProbeProcessor : public process::SampleProcessorBase {
public:
    ProbeProcessor(process::WaveformConfig &config, avb::AvbAudioBuffer &buffer)
        : SampleProcessorBase("probe", config, buffer, nullptr) {
        config.publishConfiguration();
    }

private:
    void calculate(const std::string &clockName, std::size_t sampleAmount) override {
        const bool ownThread = thread() == QThread::currentThread();
        Q_EMIT newProcessData(sonvex::ChannelData(
            clockName + " " + std::to_string(sampleAmount) + (ownThread ? "" : " on a foreign thread"), {}));
    }
};

std::string line(const std::string &where, const std::string &said) {
    return "D process::" + where + " \"probe\" " + said;
}
const std::string started = line("Processor::start", " Processing started");
const std::string stopped = line("Processor::stop", " Processing stopped");
const std::string notActive = line("Processor::stop", " Processing not active! No action will be performed!");
const std::string clockStopped = line("InternalClock::stop", "Clock stopped");
const std::string externalActive = line("SampleProcessorBase::setExternalClock", "External clock active!");
const std::string restarted = "W process::SampleProcessorBase::restartForClockChange \"probe\" Processor will be "
                              "restarted for clock change to take affect!";
std::string clockStarted(int milliseconds) {
    return line("InternalClock::start",
                "Clock started with interval of  " + std::to_string(milliseconds) + " milliseconds");
}
std::string internalActive(int rate) {
    return line("SampleProcessorBase::setInternalClock",
                "Internal clock active! Refresh rate:  " + std::to_string(rate) + " ms");
}
std::string rateSet(int rate) {
    return line("SampleProcessorBase::clockRefreshChanged",
                "Clock refresh rate set to:  " + std::to_string(rate) + " ms");
}

/// A channel "ch1" that signals every 3 samples, and what a processor on it logs.
class SampleProcessor : public testing::Test {
protected:
    /// The clocks that called since the last call, with the samples of two signals on the way.
    Ticks ticks(support::ProcessorRun &processor) {
        processor.settle();
        processor.results.clear();
        support::capture(buffer, support::ramp(0, 6));
        processor.settle();
        Ticks result;
        for (const sonvex::ChannelData &call : processor.results) {
            result.push_back(call.getName());
        }
        return result;
    }

    bool waitForTick(support::ProcessorRun &processor) {
        processor.settle();
        processor.results.clear();
        return support::waitFor([&] { return !processor.results.empty(); }) &&
               processor.results.front().getName() == "InternalClock 0";
    }

    /// Lines that @p action leads to, on the processor's thread and then on this one.
    Lines linesOf(support::ProcessorRun &processor, const std::function<void()> &action) {
        processor.settle();
        log.clear();
        action();
        processor.settle();
        return log.lines();
    }

    support::LogRecorder log;
    sonvex::BufferConfiguration bufferConfig{"buffer", 16, 3};
    avb::AvbAudioBuffer buffer{"ch1", bufferConfig};
};

const Ticks twoSignals{"ch1 3", "ch1 3"};

TEST_F(SampleProcessor, setsItselfUpFromTheConfigurationAndLogsItsStop) {
    for (const bool internal : {true, false}) {
        process::WaveformConfig onInternal("config", 7, 250);
        process::WaveformConfig onExternal("config", 7);
        log.clear();
        support::ProcessorRun processor(new ProbeProcessor(internal ? onInternal : onExternal, buffer));
        processor.settle();
        Lines lines = log.lines();
        lines.erase(lines.end() - 2); // of the worker, with its thread
        EXPECT_EQ((Lines{"D threading::Worker::Worker \"probe\" Initialized",
                         line("Processor::Processor", " Processor CREATED"),
                         line("InternalClock::InternalClock", "Clock initialized!"),
                         line("SampleProcessorBase::sampleAmountChanged", "Processed amount of samples:  7"),
                         rateSet(internal ? 250 : 500), notActive, internal ? internalActive(250) : externalActive,
                         line("SampleProcessorBase::progress",
                              "Processor active! To start the calculation please start the processor!")}),
                  lines);

        processor->start();
        const Lines ended = linesOf(processor, [&] { processor->stop(); });
        EXPECT_EQ((Lines{clockStopped, stopped}), ended) << "whichever clock is in use";
    }
}

TEST_F(SampleProcessor, startsItsTimerOnTheInternalClockOnly) {
    process::WaveformConfig onInternal("config", 2, 5);
    support::ProcessorRun internal(new ProbeProcessor(onInternal, buffer));
    EXPECT_EQ((Lines{clockStarted(5), started}), linesOf(internal, [&] { internal->start(); }));
    EXPECT_EQ((Lines{line("Processor::start", " Processing already started! No action will be performed!")}),
              linesOf(internal, [&] { internal->start(); }));
    EXPECT_TRUE(waitForTick(internal));
    EXPECT_TRUE(waitForTick(internal));
    const std::string text = internal->toString();
    EXPECT_EQ("\nInternalClock: probe\n\tClock interval: 5\n\tActive: 1", text.substr(text.rfind("\nInternalClock")));
    internal.end();

    process::WaveformConfig onExternal("config", 2);
    support::ProcessorRun external(new ProbeProcessor(onExternal, buffer));
    EXPECT_EQ(Lines{started}, linesOf(external, [&] { external->start(); }));
    EXPECT_EQ(twoSignals, ticks(external));
    bufferConfig.setClockSignalingSampleAmount(0);
    EXPECT_TRUE(ticks(external).empty()) << "no signal, no calculation";
    EXPECT_TRUE(external->isProcessingActive());
}

TEST_F(SampleProcessor, switchesItsClockWhileItRuns) {
    process::WaveformConfig config("config", 2);
    support::ProcessorRun processor(new ProbeProcessor(config, buffer));
    processor->start();
    for (int turn = 0; turn < 3; ++turn) {
        // The timer's lines come from this thread's event loop, behind those of the processor's thread.
        EXPECT_EQ((Lines{stopped, restarted, started, internalActive(turn == 0 ? 500 : 5), clockStopped,
                         clockStarted(turn == 0 ? 500 : 5)}),
                  linesOf(processor, [&] { config.setClockType(internalClock); }));
        config.setRefreshRate(5);
        EXPECT_TRUE(waitForTick(processor));
        EXPECT_EQ((Lines{stopped, restarted, started, externalActive, clockStopped}),
                  linesOf(processor, [&] { config.setClockType(externalClock); }));
        EXPECT_EQ(twoSignals, ticks(processor));
        EXPECT_TRUE(processor->isProcessingActive());
    }
}

TEST_F(SampleProcessor, switchesItsClockInSilenceWhileStopped) {
    process::WaveformConfig config("config", 2, 5);
    support::ProcessorRun processor(new ProbeProcessor(config, buffer));
    processor.settle();
    EXPECT_EQ((Lines{notActive, externalActive}), linesOf(processor, [&] { config.setClockType(externalClock); }));
    EXPECT_EQ(Lines{}, linesOf(processor, [&] { config.setRefreshRate(9); }));
    EXPECT_EQ((Lines{notActive, internalActive(9)}), linesOf(processor, [&] { config.setClockType(internalClock); }));
    EXPECT_EQ(Lines{rateSet(8)}, linesOf(processor, [&] { config.setRefreshRate(8); }));
    EXPECT_FALSE(processor->isProcessingActive());
    EXPECT_TRUE(ticks(processor).empty());
}

TEST_F(SampleProcessor, restartsItsTimerForANewRefreshRate) {
    process::WaveformConfig config("config", 2, 60000);
    support::ProcessorRun processor(new ProbeProcessor(config, buffer));
    processor->start();
    processor.settle();
    EXPECT_EQ((Lines{line("SampleProcessorBase::clockRefreshChanged",
                          "Processor active: Restarting processor to refresh clock rate change"),
                     stopped, started, rateSet(3), clockStopped, clockStarted(3)}),
              linesOf(processor, [&] { config.setRefreshRate(3); }));
    EXPECT_TRUE(waitForTick(processor));
}

TEST_F(SampleProcessor, staysAsItsHostLeftItWhenAChangeIsOnItsWay) {
    process::WaveformConfig config("config", 2, 60000);
    support::ProcessorRun processor(new ProbeProcessor(config, buffer));
    const auto hasTimer = [&] { return processor->toString().find("\n\tActive: 1") != std::string::npos; };
    for (unsigned turn = 1; turn <= 500; ++turn) {
        processor->start();
        processor.settle();
        config.setRefreshRate(60000 + turn); // restarts the processor, on its thread
        processor->stop();
        processor.settle();
        ASSERT_FALSE(processor->isProcessingActive()) << "the host stopped it, yet it runs";
        ASSERT_FALSE(hasTimer()) << "it is stopped, yet its timer runs";
        processor->start();
        processor.settle();
        config.setRefreshRate(70000 + turn);
        processor->start();
        processor.settle();
        ASSERT_TRUE(processor->isProcessingActive() && hasTimer()) << "it runs without a timer and stays silent";
        processor->stop();
        processor.settle();
    }
}

TEST_F(SampleProcessor, hearsWhatASecondOneOfTheSameConfigurationPublishes) {
    process::WaveformConfig config("config", 2);
    support::ProcessorRun first(new ProbeProcessor(config, buffer));
    first->start();
    first.settle();
    log.clear();
    support::ProcessorRun second(new ProbeProcessor(config, buffer));
    second->start();
    second.settle();
    first.settle();
    EXPECT_EQ(Lines{restarted}, log.warnings());
    EXPECT_EQ(twoSignals, ticks(first)) << "one connection, not two";
    EXPECT_EQ(twoSignals, ticks(second));
    config.setRefreshRate(5);
    config.setClockType(internalClock);
    EXPECT_TRUE(waitForTick(second));
    second.end();
    EXPECT_TRUE(waitForTick(first));
}

} // namespace
