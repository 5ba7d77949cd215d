#include "process/WaveformProcessor.h"

#include <memory>
#include <numeric>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/configuration/WaveformConfig.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/capture.h"
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

/// A sample amount, and the curves after each four samples of 1, 2, 3, ...
using BlockCase = std::pair<unsigned, std::vector<Values>>;

class WaveformBlocks : public Waveform, public testing::WithParamInterface<BlockCase> {};

TEST_P(WaveformBlocks, holdTheConfiguredAmountUpToTheSignalFromTheFirstOn) {
    const auto &[amount, curves] = GetParam();
    process::WaveformConfig config("config", amount);
    run(config);
    float first = 1;
    for (const Values &curve : curves) {
        EXPECT_EQ(std::vector<Values>{curve}, curvesAfter(support::ramp(first, 4)));
        first += 4;
    }
}

INSTANTIATE_TEST_SUITE_P(AmountsAgainstASignalEveryFour, WaveformBlocks,
                         testing::Values(BlockCase{4, {values(1, 4), values(5, 4), values(9, 4)}},
                                         BlockCase{2, {values(3, 2), values(7, 2), values(11, 2)}},
                                         BlockCase{6, {{0, 0, 1, 2, 3, 4}, values(3, 6), values(7, 6)}},
                                         BlockCase{0, {{}, {}, {}}}));

TEST_F(Waveform, endsAtTheSignalThoughNewerSamplesHaveArrived) {
    process::WaveformConfig config("config", 4);
    run(config);
    EXPECT_EQ((std::vector<Values>{values(1, 4)}), curvesAfter(support::ramp(1, 6)));
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

} // namespace
