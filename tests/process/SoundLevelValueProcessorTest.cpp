#include "process/SoundLevelValueProcessor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/SoundLevelModel.h"
#include "support/capture.h"
#include "support/waitFor.h"

namespace {

using Samples = std::vector<float>;
using Levels = std::vector<double>;

constexpr double silence = -std::numeric_limits<double>::infinity();

Samples sine(double frequency, double seconds, double amplitude = 1.0) {
    Samples samples;
    for (int n = 0; n < seconds * 48000; ++n) {
        samples.push_back(static_cast<float>(amplitude * std::sin(2 * M_PI * frequency * n / 48000)));
    }
    return samples;
}

void expectNear(const Levels &levels, const Levels &expected, double tolerance) {
    ASSERT_EQ(levels.size(), expected.size());
    for (std::size_t index = 0; index < levels.size(); ++index) {
        if (std::isinf(expected[index])) {
            EXPECT_EQ(levels[index], expected[index]) << index;
        } else {
            EXPECT_NEAR(levels[index], expected[index], tolerance) << index;
        }
    }
}

/// A channel and a level processor on it that has set up its filters.
class SoundLevel : public testing::Test {
protected:
    void run(unsigned signaled, unsigned amount) {
        processor.reset(); // before another one makes the configuration announce itself
        bufferConfig.setClockSignalingSampleAmount(signaled);
        config.setSampleAmount(amount);
        processor = std::make_unique<support::ProcessorRun>(
            process::SoundLevelValueProcessor::createInstance("l", config, buffer));
        (*processor)->start();
        capture(Samples(signaled, 0.0F)); // the cycle of the filters
        EXPECT_TRUE(processor->results.empty());
    }

    /// Returns when all signals have been answered.
    void capture(const Samples &samples) {
        support::capture(buffer, samples);
        processor->settle();
    }

    /// Each signal is answered before the next one: a late answer would fetch newer samples.
    std::vector<Levels> levelsAfter(const Samples &samples) {
        processor->results.clear();
        const std::size_t step = bufferConfig.getClockSignalingSampleAmount();
        for (std::size_t begin = 0; begin < samples.size(); begin += step) {
            const auto first = samples.begin() + static_cast<std::ptrdiff_t>(begin);
            const auto left = static_cast<std::ptrdiff_t>(std::min(step, samples.size() - begin));
            capture(Samples(first, first + left));
        }
        std::vector<Levels> levels;
        for (sonvex::ChannelData &result : processor->results) {
            EXPECT_EQ(result.getName(), "l");
            EXPECT_EQ(result.getVectorData().getX(), Levels(7, 0.0));
            levels.push_back(result.getVectorData().getY());
        }
        return levels;
    }

    support::LogRecorder log;
    sonvex::BufferConfiguration bufferConfig{"buffer", 48000, 0};
    avb::AvbAudioBuffer buffer{"ch1", bufferConfig};
    process::SoundLevelValueConfig config{"config", 0};
    std::unique_ptr<support::ProcessorRun> processor;
};

TEST_F(SoundLevel, followsTheModelForTonesBurstsAndSilenceInBlocksOfAnySize) {
    Samples signal(9600, 0.0F);
    for (const double frequency : {31.5, 63.0, 125.0, 250.0, 500.0, 1000.0, 2000.0, 4000.0, 8000.0, 16000.0}) {
        const Samples tone = sine(frequency, 0.3, 0.5);
        signal.insert(signal.end(), tone.begin(), tone.end());
    }
    for (const double seconds : {0.2, 0.05}) {
        const Samples burst = sine(4000, seconds);
        signal.insert(signal.end(), burst.begin(), burst.end());
        signal.insert(signal.end(), 24000, 0.0F);
    }
    for (const unsigned signaled : {7U, 80U, 100U, 480U, 800U, 1000U, 8000U}) {
        run(signaled, 6 * signaled);
        Samples part(signal.begin(), signaled < 80 ? signal.begin() + 20000 : signal.end());
        const std::vector<Levels> levels = levelsAfter(part);
        ASSERT_EQ(levels.size(), part.size() / (6 * signaled));
        support::SoundLevelModel model;
        for (std::size_t block = 0; block < levels.size(); ++block) {
            const auto first = part.begin() + static_cast<std::ptrdiff_t>(block * 6 * signaled);
            SCOPED_TRACE(testing::Message() << "block " << block << " of " << 6 * signaled);
            expectNear(levels[block], model.measure(Samples(first, first + static_cast<std::ptrdiff_t>(6 * signaled))),
                       1e-8);
        }
        EXPECT_TRUE(log.warnings().empty());
    }
}

TEST_F(SoundLevel, showsTheLevelOfSteadySignals) {
    struct Anchor {
        double frequency;
        double a;
        double c;
    };
    for (const Anchor &anchor : {Anchor{31.5, -39.55, -3.02}, {1000, 0, 0.02}, {16000, -7.13, -9.04}}) {
        run(4000, 24000);
        const Levels levels = levelsAfter(sine(anchor.frequency, 8)).back();
        const double z = -3.01;
        expectNear({levels[1], levels[3], levels[5]}, {z + anchor.a, z + anchor.c, z}, 0.03);
        EXPECT_NEAR(levels[4], z, anchor.frequency < 100 ? 0.2 : 0.01) << "the fast average follows a low tone";
        EXPECT_EQ(levels[6], levels[4]);
    }
    run(4000, 24000);
    const Levels constant = levelsAfter(Samples(8 * 48000, 1.0F)).back();
    EXPECT_NEAR(constant[4], 0.0, 1e-6);
    EXPECT_NEAR(constant[5], 0.0, 0.01);
    EXPECT_LT(constant[0], -200.0) << "A and C let no constant through";
}

TEST_F(SoundLevel, measuresSilenceAsMinusInfinity) {
    run(480, 2880);
    EXPECT_EQ(levelsAfter(Samples(5760, 0.0F)), (std::vector<Levels>(2, Levels(7, silence))));
}

TEST_F(SoundLevel, padsCutsAndCollectsAsItsAmountsSay) {
    const Samples tone = sine(997, 0.1);
    run(100, 100); // the last hundred, then silence
    auto levels = levelsAfter(Samples(tone.begin(), tone.begin() + 1200));
    ASSERT_EQ(levels.size(), 2U);
    support::SoundLevelModel padded;
    for (const std::ptrdiff_t block : {0, 1}) {
        Samples samples(tone.begin() + block * 600 + 500, tone.begin() + block * 600 + 600);
        samples.resize(600);
        expectNear(levels[static_cast<std::size_t>(block)], padded.measure(samples), 1e-8);
    }
    run(100, 1000); // the first 600 of a thousand
    levels = levelsAfter(Samples(tone.begin(), tone.begin() + 600));
    Samples samples(tone.begin() + 900, tone.begin() + 1200);
    samples.insert(samples.end(), 100, 0.0F); // of the cycle that set the filters up
    samples.insert(samples.end(), tone.begin(), tone.begin() + 200);
    expectNear(levels.at(0), support::SoundLevelModel().measure(samples), 1e-8);

    // Four cycles of 100, then 80 are enough for 480 samples of six cycles of 80.
    levels = levelsAfter(Samples(tone.begin(), tone.begin() + 400));
    EXPECT_TRUE(levels.empty());
    bufferConfig.setClockSignalingSampleAmount(80);
    EXPECT_EQ(levelsAfter(Samples(80, 0.0F)).size(), 1U);
}

TEST_F(SoundLevel, warnsAtEachTickOfAnInternalClockAndDeliversNothing) {
    config.setRefreshRate(5);
    config.setClockType("Internal clock");
    run(480, 2880);
    const std::string warning =
        "W process::SoundLevelValueProcessor::calculate \"l\" [1] IPP IIR filter error (A-WEIGHT): -8 size= 0";
    ASSERT_TRUE(support::waitFor([&] { return log.count(warning) >= 3; }));
    EXPECT_EQ(log.warnings().size(), static_cast<std::size_t>(log.count(warning)));
    EXPECT_TRUE(processor->results.empty());
    config.setClockType("External clock");
    processor->settle();
    EXPECT_FALSE(levelsAfter(sine(1000, 0.06)).empty());
    EXPECT_EQ(log.count("D process::SoundLevelValueProcessor::SoundLevelValueProcessor \"l\" Initialized"), 1);
}

} // namespace
