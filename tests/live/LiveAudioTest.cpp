#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/LiveStream.h"
#include "support/LogRecorder.h"
#include "support/waitFor.h"

// The whole road, from frames on the loopback adapter to a host's callback, through the exported interface alone.
namespace {

using support::waitFor;

constexpr unsigned blockSize = 480;
constexpr unsigned samplesPerPacket = support::LiveStream::samplesPerPacket;
constexpr unsigned packetsPerBlock = blockSize / samplesPerPacket;

std::int16_t toneCode(std::size_t sample, unsigned channel) {
    const double angle = 2 * 3.14159265358979323846 * 1000.0 * static_cast<double>(sample) / 48000.0;
    return static_cast<std::int16_t>(std::lround(0.5 * 32767 * std::sin(angle)) + static_cast<long>(channel));
}

/// A stream of tones, with signals every block.
class Stream : public support::LiveStream {
public:
    explicit Stream(unsigned channels = 8) : LiveStream(channels, blockSize, toneCode) {}

    sonvex::ihandles::IProcessorHandle &addWaveform(unsigned char channel) const {
        return add("waveform " + std::to_string(channel),
                   sonvex::iprocess::IWaveformConfig::createInstance("config", blockSize), channel);
    }
};

/// What a host's callback sees.
class Results {
public:
    explicit Results(sonvex::ihandles::IProcessorHandle &handle) {
        bound = ISonvex::createInstance().getMeteringDataSource(handle).bindChannelCallback(
            [blocks = blocks, names = names](sonvex::IChannelData &data) {
                blocks->push_back(data.getVectorData().getY());
                names->push_back(data.getName());
                const auto x = data.getVectorData().getX();
                for (std::size_t index = 0; index < x.size(); ++index) {
                    ASSERT_EQ(x[index], static_cast<double>(index));
                }
            });
    }

    bool wait(std::size_t amount) const {
        return waitFor([&] { return blocks->size() >= amount; });
    }

    // Shared with the callback, which stays bound for the life of the source.
    std::shared_ptr<std::vector<std::vector<double>>> blocks = std::make_shared<std::vector<std::vector<double>>>();
    std::shared_ptr<std::vector<std::string>> names = std::make_shared<std::vector<std::string>>();
    bool bound = false;
};

void expectTone(const std::vector<double> &block, std::size_t firstSample, unsigned channel) {
    ASSERT_EQ(block.size(), blockSize);
    for (std::size_t index = 0; index < block.size(); ++index) {
        ASSERT_EQ(block[index], toneCode(firstSample + index, channel) / 32768.0) << firstSample << "+" << index;
    }
}

TEST(LiveAudio, reachesTheCallbackSampleForSampleButForAGap) {
    Stream stream;
    auto &first = stream.addWaveform(1);
    auto &last = stream.addWaveform(7);
    const Results firstResults(first);
    const Results lastResults(last);
    const support::LogRecorder log;
    stream.capture.start();
    first.start();
    last.start();
    constexpr std::size_t blocks = 50;
    constexpr std::size_t gap = 40;
    for (std::size_t block = 1; block <= blocks; ++block) {
        // One at a time: a fetch in the external mode gives the newest signaled block, which a later one replaces.
        // With a packet, the one that shows the gap is lost.
        stream.send(packetsPerBlock + (block == gap + 1 ? 1 : 0), block == gap + 1 ? 1 : 0);
        ASSERT_TRUE(firstResults.wait(block));
        ASSERT_TRUE(lastResults.wait(block));
    }
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t lost = block < gap ? 0 : 2 * std::size_t{samplesPerPacket};
        expectTone((*firstResults.blocks)[block], block * blockSize + lost, 1);
        expectTone((*lastResults.blocks)[block], block * blockSize + lost, 7);
    }
    EXPECT_EQ(firstResults.names->front(), "waveform 1");
    EXPECT_EQ(log.count("Packets missed:  1"), 1);
    EXPECT_EQ(log.warnings().size(), 1U);
    first.stop();
    stream.send(packetsPerBlock);
    ASSERT_TRUE(lastResults.wait(blocks + 1));
    EXPECT_EQ(firstResults.blocks->size(), blocks);
    EXPECT_TRUE(stream.capture.isRunning());
    stream.capture.stop();
}

TEST(LiveAudio, announcesAStreamToTheReceiverOfMessages) {
    ISonvex &facade = ISonvex::createInstance();
    Stream early(2);
    auto &handle = early.addWaveform(0);
    const Results results(handle);
    handle.start();
    early.capture.start();
    facade.setMessageReceiver({});
    early.send(packetsPerBlock);
    ASSERT_TRUE(results.wait(1)); // its announcement is gone, or still on the way of all messages
    Stream late(4);
    std::shared_ptr<sonvex::imessages::IBaseMessage> seen;
    facade.setMessageReceiver([&](const std::shared_ptr<sonvex::imessages::IBaseMessage> &message) {
        if (message->getMessageId() == late.mac) {
            facade.setMessageReceiver({}); // a receiver may end itself
            seen = message;
        }
    });
    late.send(1);
    ASSERT_TRUE(waitFor([&] { return seen != nullptr; }));
    const auto &change = dynamic_cast<sonvex::imessages::IChannelAmountChanged &>(*seen);
    EXPECT_EQ(seen->getName(), "ChannelAmountChanged");
    EXPECT_EQ(change.getChannelAmountBefore(), -1);
    EXPECT_EQ(change.getChannelAmountAfter(), 4);
    EXPECT_EQ(change.getConfiguredChannelAmount(), 4U);
    early.capture.stop();
}

TEST(LiveAudio, keepsSourceAndBindingWhenAProcessorComesBack) {
    ISonvex &facade = ISonvex::createInstance();
    Stream stream(2);
    auto &handle = stream.addWaveform(0);
    sonvex::IMeteringDataSource &source = facade.getMeteringDataSource(handle);
    EXPECT_FALSE(source.bindChannelCallback({}));
    EXPECT_NE(source.toString().find("List of bound callbacks: []"), std::string::npos);
    const Results results(handle);
    const Results dropped(handle);
    EXPECT_TRUE(results.bound);
    EXPECT_TRUE(dropped.bound); // but the first function stays
    stream.capture.start();
    for (std::size_t life = 1; life <= 3; ++life) {
        EXPECT_TRUE(handle.isHandleBound());
        handle.start();
        EXPECT_TRUE(handle.isProcessingActive());
        stream.send(packetsPerBlock);
        ASSERT_TRUE(results.wait(life));
        facade.removeProcessor(handle);
        EXPECT_FALSE(handle.isHandleBound());
        handle.start();
        EXPECT_FALSE(handle.isProcessingActive());
        EXPECT_EQ(&facade.getMeteringDataSource(handle), &source);
        EXPECT_THROW(facade.removeProcessor(handle), exceptions::ResourceNotAvailable);
        EXPECT_EQ(&stream.addWaveform(0), &handle);
        EXPECT_EQ(&facade.getMeteringDataSource(handle), &source);
    }
    EXPECT_TRUE(dropped.blocks->empty());
    EXPECT_THROW(stream.addWaveform(0), exceptions::ProcessorAlreadyExists);
    EXPECT_THROW(stream.addWaveform(2), exceptions::ResourceNotAvailable);
    stream.capture.stop();
}

} // namespace
