#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/LiveStream.h"
#include "support/LogRecorder.h"
#include "support/SoundLevelModel.h"
#include "support/waitFor.h"

// All processors on both channels of a stream, in real time, while the host changes its mind.
namespace {

using support::waitFor;

constexpr unsigned blockSize = 480;
constexpr unsigned packetsPerBlock = blockSize / support::LiveStream::samplesPerPacket;
constexpr unsigned blocksPerSecond = 100;

struct Tone {
    double frequency;
    double amplitude;
};
constexpr Tone tones[] = {{1000.0, 0.5}, {100.0, 0.1}};

std::int16_t toneCode(std::size_t sample, unsigned channel) {
    const double seconds = static_cast<double>(sample % 48000) / 48000.0; // whole periods
    const double value = tones[channel].amplitude * std::sin(2 * M_PI * tones[channel].frequency * seconds);
    return static_cast<std::int16_t>(std::lround(32768 * value));
}

/// A processor that is added and started, and what has come from it.
class Analysis {
public:
    /// @param cycles from one result to the next @param setUp cycles before
    Analysis(const support::LiveStream &stream, std::string name, sonvex::iprocess::ISampleProcessorConfigBase &config,
             unsigned char channel, std::size_t cycles = 1, std::size_t setUp = 0)
        : stream(stream), name(std::move(name)), config(config), channel(channel), cycles(cycles), setUp(setUp) {
        add();
        ISonvex::createInstance().getMeteringDataSource(*handle).bindChannelCallback(
            [this](sonvex::IChannelData &data) {
                ++results;
                x = data.getVectorData().getX();
                y = data.getVectorData().getY();
            });
    }

    void add() {
        handle = &stream.add(name, config, channel);
        handle->start();
        cycle = 0;
    }

    void remove() { ISonvex::createInstance().removeProcessor(*handle); }

    /// Another block is about to be sent. @return whether it leads to a result
    bool expectCycle() {
        const bool leads = handle->isProcessingActive() && ++cycle > setUp && (cycle - setUp) % cycles == 0;
        due += leads ? 1 : 0;
        return leads;
    }

    /// Whether all results that are due have come, and no other.
    bool isComplete() const { return results == due; }

    const support::LiveStream &stream;
    const std::string name;
    sonvex::iprocess::ISampleProcessorConfigBase &config;
    const unsigned char channel;
    const std::size_t cycles;
    const std::size_t setUp;
    sonvex::ihandles::IProcessorHandle *handle = nullptr;
    std::size_t cycle = 0;
    std::size_t due = 0;
    std::size_t results = 0;
    std::vector<double> x;
    std::vector<double> y;
};

constexpr unsigned blocksPerLevels = 6;

struct Channel {
    Channel(const support::LiveStream &stream, unsigned char number)
        : number(number), waveform(stream, "waveform", waveformConfig, number),
          spectrum(stream, "spectrum", spectrumConfig, number),
          levels(stream, "levels", levelConfig, number, blocksPerLevels, 1) {}

    /// Another block is about to be sent, behind so many samples.
    void expectBlock(std::size_t samplesBefore) {
        waveform.expectCycle();
        spectrum.expectCycle();
        if (levels.expectCycle()) {
            const std::size_t end = samplesBefore + blockSize;
            std::vector<float> latest;
            for (std::size_t sample = end - std::size_t{blocksPerLevels} * blockSize; sample < end; ++sample) {
                latest.push_back(static_cast<float>(toneCode(sample, number)) / 32768);
            }
            lawfulLevels = levelsLaw.measure(latest);
        }
    }

    /// The levels of all that the processor has measured.
    void expectLevels() const {
        ASSERT_EQ(levels.y.size(), lawfulLevels.size());
        for (std::size_t index = 0; index < lawfulLevels.size(); ++index) {
            ASSERT_NEAR(levels.y[index], lawfulLevels[index], 1e-8) << "channel " << int{number} << ", " << index;
        }
    }

    /// The tone in the right bin, and its power within the window's main lobe.
    void expectTone() const {
        const unsigned order = spectrumConfig.getFftOrder();
        const double binWidth = 48000.0 / (1U << order);
        ASSERT_EQ(spectrum.y.size(), std::size_t{1} << (order - 1));
        ASSERT_EQ(spectrum.x.size(), spectrum.y.size());
        const auto peak = std::max_element(spectrum.y.begin(), spectrum.y.end()) - spectrum.y.begin();
        EXPECT_NEAR(spectrum.x[static_cast<std::size_t>(peak)] * binWidth, tones[number].frequency, binWidth / 2);
        double power = 0;
        for (auto bin = std::max<std::ptrdiff_t>(peak - 3, 0); bin <= peak + 3; ++bin) {
            power += spectrum.y[static_cast<std::size_t>(bin)];
        }
        const double level = 10 * std::log10(tones[number].amplitude * tones[number].amplitude / 2);
        EXPECT_NEAR(10 * std::log10(power), level, 0.02) << "channel " << int{number} << ", order " << order;
    }

    unsigned char number;
    sonvex::iprocess::IWaveformConfig &waveformConfig =
        sonvex::iprocess::IWaveformConfig::createInstance("waveform", blockSize);
    sonvex::iprocess::ISpectrumConfig &spectrumConfig =
        sonvex::iprocess::ISpectrumConfig::createInstance("spectrum", 0);
    sonvex::iprocess::ISoundLevelValueConfig &levelConfig =
        sonvex::iprocess::ISoundLevelValueConfig::createInstance("levels", blocksPerLevels *blockSize);
    Analysis waveform;
    Analysis spectrum;
    Analysis levels;
    support::SoundLevelModel levelsLaw;
    std::vector<double> lawfulLevels;
};

class LiveAnalysis : public testing::Test {
protected:
    void SetUp() override { stream.capture.start(); }

    void TearDown() override {
        stream.capture.stop();
        for (const Analysis *analysis : all) {
            analysis->handle->stop();
        }
    }

    /// Sends so many sixtieths of the tones, block by block; each result that is due has to come before the next block.
    void play(unsigned sixtieths) {
        for (unsigned i = 0; i < sixtieths * seconds * blocksPerSecond / 60 && !HasFatalFailure(); ++i) {
            for (Channel *channel : {&left, &right}) {
                channel->expectBlock(std::size_t{blocks} * blockSize);
            }
            stream.send(packetsPerBlock);
            ++blocks;
            const auto time = begin + std::chrono::milliseconds(blocks * 1000 / blocksPerSecond);
            ASSERT_TRUE(waitFor([&] {
                return std::chrono::steady_clock::now() >= time &&
                       std::all_of(all.begin(), all.end(), [](const Analysis *each) { return each->isComplete(); });
            })) << "block "
                << blocks;
            left.expectLevels();
            right.expectLevels();
        }
    }

    /// Returns when a processor has answered all signals so far, those without a result too: behind them it takes the
    /// clock that it has anew, and says so.
    void settle(const Analysis &analysis) {
        const std::string taken = "External clock active!";
        const int before = log.count(taken);
        analysis.config.setClockType("Internal clock");
        analysis.config.setClockType("External clock");
        ASSERT_TRUE(waitFor([&] { return log.count(taken) > before; }));
        support::deliverQueued();
    }

    const char *const wantedSeconds = std::getenv("SONVEX_TEST_LIVE_SECONDS");
    /// Fewer would not fill the longest window of an average.
    const unsigned seconds =
        std::max(8U, wantedSeconds == nullptr ? 0U : static_cast<unsigned>(std::atoi(wantedSeconds)));
    support::LogRecorder log;
    support::LiveStream stream{2, blockSize, toneCode};
    Channel left{stream, 0};
    Channel right{stream, 1};
    const std::vector<const Analysis *> all{&left.waveform,  &left.spectrum,  &left.levels,
                                            &right.waveform, &right.spectrum, &right.levels};
    const std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    unsigned blocks = 0;
};

TEST_F(LiveAnalysis, accountsForEachResult) {
    right.spectrumConfig.setFftOrder(12);
    play(10);
    left.expectTone();
    right.expectTone();

    settle(right.levels);
    left.spectrum.handle->stop();
    right.waveform.handle->stop();
    right.levels.handle->stop(); // its filters and averages stay
    play(5);
    for (const Analysis *stopped : {&left.spectrum, &right.waveform, &right.levels}) {
        settle(*stopped);
    }
    left.spectrum.handle->start();
    right.waveform.handle->start();
    right.levels.handle->start();
    play(5);
    left.expectTone();

    for (const unsigned order : {10U, 15U, 13U}) {
        left.spectrumConfig.setFftOrder(order);
        right.waveformConfig.setSampleAmount(order);
        play(2);
        left.expectTone();
        EXPECT_EQ(right.waveform.y.size(), order);
    }
    right.spectrumConfig.setMovingAverageWindowSize(50);
    right.spectrumConfig.setMovingAverageActive(true);
    play(4);
    right.expectTone();

    left.levels.remove();
    right.spectrum.remove();
    play(2);
    left.levels.add();
    left.levelsLaw = {};
    right.spectrum.add();
    right.spectrumConfig.setMovingAverageWindowLength(100);
    play(10);
    right.expectTone();

    // On a timer the results can't be counted; they have to come, and from the signal again afterwards.
    left.waveformConfig.setRefreshRate(5);
    left.waveformConfig.setClockType("Internal clock");
    ASSERT_TRUE(waitFor([&] { return left.waveform.results > left.waveform.due + 100; }));
    left.waveform.handle->stop();
    settle(left.waveform);
    left.waveform.due = left.waveform.results;
    left.waveform.handle->start();
    play(18);
    left.expectTone();
    right.expectTone();
    EXPECT_EQ(log.count("Packets missed"), 0);
}

} // namespace
