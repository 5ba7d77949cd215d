#include "process/WaveformProcessor.h"

#include <memory>
#include <numeric>

#include <gtest/gtest.h>
#include <sonvex/exceptions.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/configuration/DemoConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/CaptureThread.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/waitFor.h"

namespace {

using Values = std::vector<double>;

Values values(double first, std::size_t amount) {
    Values result(amount);
    std::iota(result.begin(), result.end(), first);
    return result;
}

/// A channel of 16 samples that signals every 4, and a waveform processor on it that runs.
class Waveform : public testing::Test {
protected:
    void run(process::WaveformConfig &config) {
        processor =
            std::make_unique<support::ProcessorRun>(process::WaveformProcessor::createInstance("wave", config, buffer));
        (*processor)->start();
    }

    /// The curves that the next @p samples lead to; checks name and x of each.
    std::vector<Values> curvesAfter(const std::vector<float> &samples) {
        processor->results.clear();
        support::capture(buffer, samples);
        processor->settle();
        std::vector<Values> curves;
        for (sonvex::ChannelData &result : processor->results) {
            EXPECT_EQ("wave", result.getName());
            curves.push_back(result.getVectorData().getY());
            EXPECT_EQ(values(0.0, curves.back().size()), result.getVectorData().getX());
        }
        return curves;
    }

    const support::LogRecorder log;
    sonvex::BufferConfiguration bufferConfig{"buffer", 16, 4};
    avb::AvbAudioBuffer buffer{"ch1", bufferConfig};
    std::unique_ptr<support::ProcessorRun> processor;
};

struct BlockCase {
    unsigned sampleAmount;
    std::vector<Values> curves; ///< after each four samples of 1, 2, 3, ...
};

class WaveformBlocks : public Waveform, public testing::WithParamInterface<BlockCase> {};

TEST_P(WaveformBlocks, holdTheConfiguredAmountUpToTheSignalFromTheFirstOn) {
    process::WaveformConfig config("config", GetParam().sampleAmount);
    run(config);
    for (std::size_t block = 0; block < GetParam().curves.size(); ++block) {
        const float first = static_cast<float>(4 * block + 1);
        EXPECT_EQ(std::vector<Values>{GetParam().curves[block]}, curvesAfter(support::ramp(first, 4))) << block;
    }
}

INSTANTIATE_TEST_SUITE_P(AmountsAgainstASignalEveryFour, WaveformBlocks,
                         testing::Values(BlockCase{4, {values(1, 4), values(5, 4), values(9, 4)}},
                                         BlockCase{2, {values(3, 2), values(7, 2), values(11, 2)}},
                                         BlockCase{6, {{0, 0, 1, 2, 3, 4}, values(3, 6), values(7, 6)}},
                                         BlockCase{0, {{}, {}, {}}}));

TEST_F(Waveform, keepsTheBitsOfASample) {
    process::WaveformConfig config("config", 4);
    run(config);
    const std::vector<float> samples{0.1F, -1.0F, 32767.0F / 32768.0F, -1.0F / 32768.0F};
    EXPECT_EQ((std::vector<Values>{Values(samples.begin(), samples.end())}), curvesAfter(samples));
}

TEST_F(Waveform, endsAtTheSignalThoughNewerSamplesHaveArrived) {
    process::WaveformConfig config("config", 4);
    run(config);
    EXPECT_EQ((std::vector<Values>{values(1, 4)}), curvesAfter(support::ramp(1, 6)));
}

TEST_F(Waveform, cutsABlockToTheBufferWithTheBuffersWarning) {
    process::WaveformConfig config("config", 4000000000U);
    run(config);
    curvesAfter(support::ramp(1, 12));
    EXPECT_EQ((std::vector<Values>{values(1, 16)}), curvesAfter(support::ramp(13, 4)));
    ASSERT_EQ(4U, log.warnings().size());
    EXPECT_EQ("W avb::AvbAudioBuffer::fetchSamples \"ch1\" More samples requested than available by the buffer.  Only "
              "maximum available amount will be returned:  16  instead of  4000000000",
              log.warnings().back());
}

TEST_F(Waveform, followsANewAmountAtTheNextBlockWithoutRestart) {
    process::WaveformConfig config("config", 4);
    run(config);
    EXPECT_EQ((std::vector<Values>{values(1, 4)}), curvesAfter(support::ramp(1, 4)));
    for (const unsigned amount : {8U, 1U, 0U, 3U}) {
        config.setSampleAmount(amount);
        curvesAfter(support::ramp(5, 4));
        EXPECT_EQ((std::vector<Values>{values(13.0 - amount, amount)}), curvesAfter(support::ramp(9, 4))) << amount;
        config.setSampleAmount(4);
        config.setSampleAmount(amount);
        EXPECT_EQ((std::vector<Values>{values(17.0 - amount, amount)}), curvesAfter(support::ramp(13, 4))) << amount;
    }
    EXPECT_EQ(1, log.count(" Processing started"));
}

TEST_F(Waveform, deliversNothingWhileStoppedAndGoesOnWithTheNewest) {
    process::WaveformConfig config("config", 4);
    run(config);
    (*processor)->stop();
    EXPECT_TRUE(curvesAfter(support::ramp(1, 12)).empty());
    (*processor)->start();
    EXPECT_EQ((std::vector<Values>{values(13, 4)}), curvesAfter(support::ramp(13, 4)));
}

TEST_F(Waveform, takesTheNewestSamplesOnTheInternalClock) {
    process::WaveformConfig config("config", 4, 5);
    run(config);
    support::capture(buffer, support::ramp(1, 6));
    processor->settle();
    processor->results.clear();
    ASSERT_TRUE(support::waitFor([&] { return processor->results.size() >= 3; }));
    EXPECT_EQ(values(3, 4), processor->results.back().getVectorData().getY());
    (*processor)->stop();
    processor->settle();
    EXPECT_TRUE(curvesAfter(support::ramp(7, 8)).empty());
}

TEST_F(Waveform, neverTearsABlockWhileACaptureRuns) {
    process::WaveformConfig external("external", 8);
    process::WaveformConfig internal("internal", 8, 1);
    for (process::WaveformConfig *config : {&external, &internal}) {
        support::capture(buffer, support::ramp(-15, 16)); // where the ramp of the thread goes on
        run(*config);
        const support::CaptureThread capture({&buffer});
        ASSERT_TRUE(support::waitFor([&] { return processor->results.size() >= 200; }));
        processor->end();
        for (sonvex::ChannelData &result : processor->results) {
            const Values y = result.getVectorData().getY();
            ASSERT_EQ(8U, y.size());
            ASSERT_EQ(values(y.front(), 8), y) << config->getName();
        }
    }
}

TEST_F(Waveform, refusesAConfigurationOfAnotherTypeBeforeAnyProcessorExists) {
    process::DemoConfig config("config", 1);
    EXPECT_THROW(process::WaveformProcessor::createInstance("wave", config, buffer),
                 exceptions::InstanceNotConvertable);
    EXPECT_EQ(0, log.count("threading::Worker"));
}

} // namespace
