#include <random>

#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "core/configuration/ProcessConfiguration.h"
#include "core/metering/ProcessConnection.h"
#include "engine/processing/ProcessorEngine.h"
#include "engine/processing/ProcessorHandle.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SpectrumConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/CaptureThread.h"
#include "support/LogRecorder.h"
#include "support/waitFor.h"

namespace {

/// A channel with its buffer, its configuration and its processor, which comes and goes.
struct Channel {
    Channel(engine::processing::ProcessorEngine &engine, process::SampleProcessorConfigBase &config,
            unsigned char number)
        : engine(engine), config(config), process("churn", &config, "0a0b0c0d0e0f", number) {
        add();
    }

    void add() {
        handle = engine.addProcessor(process, buffer);
        engine.getProcessConnection(*handle)->setCallbackMethod([this](sonvex::ChannelData &result) {
            ++results;
            lastAmount = result.getVectorData().getY().size();
        });
        handle->start();
        ++added;
    }

    /// Whether @p frames results of @p amount samples arrive, one after the other.
    bool delivers(std::size_t amount, int frames) {
        if (!support::waitFor([&] { return lastAmount == amount; })) {
            return false;
        }
        results = 0;
        return support::waitFor([&] { return results >= frames; }) && lastAmount == amount;
    }

    engine::processing::ProcessorEngine &engine;
    sonvex::BufferConfiguration bufferConfig{"buffer", 256, 24};
    avb::AvbAudioBuffer buffer{"channel", bufferConfig};
    process::SampleProcessorConfigBase &config;
    sonvex::ProcessConfiguration process;
    engine::processing::ProcessorHandle *handle = nullptr;
    int added = 0;
    int results = 0;
    std::size_t lastAmount = 0;
};

const char *const clockTypes[] = {"Internal clock", "External clock"};

/// Changes whatever a host can change, every millisecond, for a second and a half.
void churn(const std::vector<Channel *> &channels, process::SpectrumConfig &spectrum) {
    std::mt19937 random(20240611); // NOLINT(cert-msc51-cpp): the same on every run
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    QElapsedTimer time;
    time.start();
    for (int turn = 0; !time.hasExpired(1500); ++turn) {
        Channel &channel = *channels[below(static_cast<unsigned>(channels.size()))];
        switch (below(7)) {
        case 0:
            channel.config.setClockType(clockTypes[below(2)]);
            break;
        case 1:
            channel.config.setRefreshRate(1 + below(3));
            break;
        case 2:
            channel.config.setSampleAmount(below(300));
            break;
        case 3:
            channel.bufferConfig.setClockSignalingSampleAmount(6 * below(8));
            break;
        case 4:
            spectrum.setFftOrder(below(10));
            spectrum.setMovingAverageActive(below(2) == 0);
            spectrum.setMovingAverageWindowSize(below(9));
            spectrum.setMovingAverageWindowLength(10 * below(9));
            break;
        case 5:
            below(2) == 0 ? channel.handle->stop() : channel.handle->start();
            break;
        default:
            if (turn % 8 == 0) {
                channel.engine.removeProcessor(*channel.handle);
                channel.add();
            }
        }
        support::deliverQueued();
        QThread::msleep(1);
    }
}

TEST(ProcessorChurn, leavesProcessorsAsTheLastChangeSaysAndLosesNoThread) {
    const support::LogRecorder log;
    int added = 0;
    {
        process::WaveformConfig waveforms[] = {{"waveform", 24, 2}, {"waveform", 24, 2}};
        process::SoundLevelValueConfig levels{"levels", 288};
        process::SpectrumConfig spectrum{"spectrum", 0, "SpectrumProcessor"};
        engine::processing::ProcessorEngine engine;
        Channel channels[] = {
            {engine, levels, 1}, {engine, spectrum, 2}, {engine, waveforms[0], 3}, {engine, waveforms[1], 4}};
        const support::CaptureThread capture(
            {&channels[0].buffer, &channels[1].buffer, &channels[2].buffer, &channels[3].buffer});
        churn({&channels[0], &channels[1], &channels[2], &channels[3]}, spectrum);
        spectrum.setFftOrder(4); // 8 bins
        std::size_t amount = 7;  // that of the levels, whatever they are taken from
        for (Channel &channel : channels) {
            // A channel on the internal clock gets no signals to fall back on.
            const bool internal = amount % 2 == 0;
            channel.config.setClockType(clockTypes[internal ? 0 : 1]);
            channel.config.setRefreshRate(5);
            channel.config.setSampleAmount(static_cast<unsigned>(amount));
            channel.bufferConfig.setClockSignalingSampleAmount(internal ? 0 : 48);
            channel.handle->start();
            EXPECT_TRUE(channel.delivers(amount++, 10));
        }
        engine.stop();
        for (Channel &channel : channels) {
            EXPECT_FALSE(channel.handle->isProcessingActive());
            added += channel.added;
        }
        engine.retire(); // before the configurations go, which a last calculation may still read
    }
    EXPECT_GT(added, 10);
    EXPECT_EQ(added, log.count("threading::Worker::~Worker \"churn\" DELETED"));
    EXPECT_EQ(added, log.count("threading::Controller::~Controller \"churn\" Worker thread ended"));
}

} // namespace
