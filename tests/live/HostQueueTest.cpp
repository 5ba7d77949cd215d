#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>
#include <vector>

#include <QDeadlineTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "core/configuration/DeviceConfiguration.h"
#include "support/LiveStream.h"
#include "support/LogRecorder.h"
#include "support/waitFor.h"

// What waits for the host's event loop, when a processor goes and when a run is over.
namespace {

using namespace sonvex::iprocess;

constexpr unsigned blockSize = 48;
constexpr unsigned packetsPerBlock = blockSize / support::LiveStream::samplesPerPacket;

/// One value for all samples of a block.
std::int16_t blockCode(std::size_t sample, unsigned channel) {
    return static_cast<std::int16_t>(100 * (1 + sample / blockSize) + channel);
}

double blockValue(std::size_t block, unsigned channel) {
    return blockCode(block * blockSize, channel) / 32768.0;
}

/// A started analysis, and what its callback got.
struct Analysis {
    Analysis(const support::LiveStream &stream, std::string name, ISampleProcessorConfigBase &config,
             unsigned char channel)
        : stream(stream), name(std::move(name)), config(config), channel(channel), handle(&add()) {
        ISonvex::createInstance().getMeteringDataSource(*handle).bindChannelCallback(
            [this](sonvex::IChannelData &data) {
                onResult();
                values.push_back(data.getVectorData().getY()); // of the result, whatever became of its processor
            });
    }

    sonvex::ihandles::IProcessorHandle &add() const {
        auto &added = stream.add(name, config, channel);
        added.start();
        return added;
    }

    const support::LiveStream &stream;
    const std::string name;
    ISampleProcessorConfigBase &config;
    const unsigned char channel;
    sonvex::ihandles::IProcessorHandle *handle;
    std::function<void()> onResult = [] {};
    std::vector<std::vector<double>> values;
};

/// How many adapters are open in this network, and one line.
std::ptrdiff_t openAdapters() {
    std::ifstream sockets("/proc/net/packet");
    return std::count(std::istreambuf_iterator<char>(sockets), {}, '\n');
}

class HostQueue : public testing::Test {
protected:
    HostQueue() {
        spectrumConfig.setFftOrder(5);
        stream.capture.start();
    }
    ~HostQueue() override {
        ISonvex::destroy();
        support::deliverQueued(); // while there is somebody
    }

    /// Waits without the event loop, so that results stay in the queue.
    static bool waitAsleep(const std::function<bool()> &condition) {
        const QDeadlineTimer deadline(20000);
        while (!condition() && !deadline.hasExpired()) {
            QThread::usleep(100);
        }
        return condition();
    }

    /// Sends the next block and returns when all analyses have calculated its result.
    void playBlock() {
        frames += packetsPerBlock;
        stream.send(packetsPerBlock);
        ASSERT_TRUE(waitAsleep([&] { return facts.getFramesTaken() == frames; }));
        for (const Analysis *analysis : {&first, &second, &spectrum}) {
            // Behind the calculation the processor takes the clock that it has anew, and says so.
            const std::string taken = "::setExternalClock \"" + analysis->name + "\" External clock active!";
            const int before = log.count(taken);
            analysis->config.setClockType("none");
            analysis->config.setClockType("External clock");
            ASSERT_TRUE(!analysis->handle->isHandleBound() || waitAsleep([&] { return log.count(taken) > before; }));
        }
    }

    const support::LogRecorder log;
    const std::ptrdiff_t adapters = (ISonvex::destroy(), openAdapters()); ///< those of others
    support::LiveStream stream{2, blockSize, blockCode};
    const sonvex::IStreamFacts &facts = sonvex::IStreamFacts::createInstance(stream.mac);
    sonvex::IBufferConfiguration &bufferConfiguration =
        *dynamic_cast<sonvex::DeviceConfiguration &>(stream.device).getBufferConfiguration();
    std::uint64_t frames = 0;
    ISpectrumConfig &spectrumConfig = ISpectrumConfig::createInstance("spectrum", 0);
    Analysis first{stream, "first", IWaveformConfig::createInstance("first", blockSize), 0};
    Analysis second{stream, "second", IWaveformConfig::createInstance("second", blockSize), 1};
    Analysis spectrum{stream, "spectrum", spectrumConfig, 1};
};

TEST_F(HostQueue, keepsResultsAsTheyWereAndDeliversThemWhenTheirRunIsOver) {
    constexpr std::size_t blocks = 5;
    for (std::size_t block = 0; block < blocks; ++block) {
        playBlock();
    }
    first.handle->stop();
    EXPECT_TRUE(first.values.empty());
    ISonvex::destroy();
    EXPECT_EQ(openAdapters(), adapters + 1) << "more than the talker's";
    EXPECT_TRUE(first.values.empty()) << "delivered by anything but the host's loop";
    stream.send(10 * packetsPerBlock); // after the end
    support::deliverQueued();
    support::deliverQueued();
    for (const Analysis *analysis : {&first, &second, &spectrum}) {
        ASSERT_EQ(analysis->values.size(), blocks) << analysis->name;
    }
    for (std::size_t block = 0; block < blocks; ++block) {
        EXPECT_EQ(first.values[block], std::vector<double>(blockSize, blockValue(block, 0)));
        EXPECT_EQ(second.values[block], std::vector<double>(blockSize, blockValue(block, 1)));
        const double amplitude = blockValue(block, 1) / blockValue(0, 1);
        ASSERT_EQ(spectrum.values[block].size(), 16U);
        EXPECT_NEAR(spectrum.values[block][0] / spectrum.values[0][0], amplitude * amplitude, 1e-4) << block;
    }
}

TEST_F(HostQueue, losesTheResultsOfAProcessorThatItsOwnCallbackRemovesAndOfNoOther) {
    ISonvex &facade = ISonvex::createInstance();
    bool addsAgain = false;
    first.onResult = [&] {
        facade.removeProcessor(*first.handle);
        if (addsAgain) {
            EXPECT_EQ(&first.add(), first.handle);
        }
    };
    std::size_t played = 0;
    for (const bool again : {false, true, true}) {
        addsAgain = again;
        const std::size_t others = second.values.size();
        const std::size_t before = first.values.size();
        for (int block = 0; block < 3; ++block) {
            playBlock();
        }
        support::deliverQueued();
        ASSERT_EQ(first.values.size(), before + 1) << "results of a removed processor arrived";
        EXPECT_EQ(first.values.back(), std::vector<double>(blockSize, blockValue(played, 0)));
        EXPECT_EQ(second.values.size(), others + 3);
        EXPECT_EQ(second.values.back(), std::vector<double>(blockSize, blockValue(played + 2, 1)));
        EXPECT_EQ(first.handle->isHandleBound(), again);
        if (!again) {
            EXPECT_EQ(&first.add(), first.handle);
        }
        played += 3;
    }
}

TEST_F(HostQueue, deliversNoNoticeOfAConfigurationThatIsGone) {
    const auto changeOnAnotherThread = [&](unsigned amount) {
        std::thread([&, amount] {
            bufferConfiguration.setClockSignalingSampleAmount(amount);
            spectrumConfig.setMovingAverageActive(amount == 24);
        }).join();
    };
    const auto notices = [&] { return log.count("Signaling sample amount ch") + log.count("Moving Average "); };
    support::deliverQueued();
    const int before = notices();
    changeOnAnotherThread(24);
    EXPECT_EQ(notices(), before);
    support::deliverQueued();
    EXPECT_EQ(notices(), before + 3); // of two buffers and an averager
    changeOnAnotherThread(48);
    ISonvex::destroy();
    support::deliverQueued();
    EXPECT_EQ(notices(), before + 3);
}

} // namespace
