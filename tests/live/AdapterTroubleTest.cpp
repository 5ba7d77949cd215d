#include <memory>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/Frames.h"
#include "support/LiveStream.h"
#include "support/LogRecorder.h"
#include "support/NetworkNamespace.h"
#include "support/loopback.h"
#include "support/waitFor.h"

// What a host sees of adapters in trouble, from the frames on the wire to its callback.
namespace {

constexpr unsigned amount = 48;

/// Two connected adapters that come and go; the library knows them.
class AdapterTrouble : public testing::Test {
protected:
    AdapterTrouble() {
        support::makeVethPair("near0", "far0");
        support::makeVethPair("near1", "far1");
        sonvex::INetworkDeviceManager::createInstance().scanDevices();
    }
    ~AdapterTrouble() override {
        ISonvex::destroy();
        support::removeInterface("near0");
    }

    /// A run with one waveform on the first adapter, started.
    std::unique_ptr<support::LiveStream> begin() {
        auto stream = std::make_unique<support::LiveStream>(
            2, amount, [](std::size_t, unsigned) { return 5; }, "near0", "far0");
        auto &handle =
            stream->add("waveform", sonvex::iprocess::IWaveformConfig::createInstance("waveform", amount), 0);
        ISonvex::createInstance().getMeteringDataSource(handle).bindChannelCallback(
            [this](sonvex::IChannelData &) { ++results; });
        handle.start();
        stream->capture.start();
        return stream;
    }

    bool hears(support::LiveStream &stream) {
        const int before = results;
        return support::waitFor([&] {
            stream.send(8);
            return results > before + 3;
        });
    }

    int results = 0;
    const support::LogRecorder log;
};

TEST_F(AdapterTrouble, goesOnWhenTheLinkIsBack) {
    const auto stream = begin();
    EXPECT_TRUE(hears(*stream));
    for (const char *end : {"far0", "near0"}) {
        for (int flap = 0; flap < 3; ++flap) {
            support::setInterfaceUp(end, false);
            support::setInterfaceUp(end, true);
            support::waitForLink("far0");
            EXPECT_TRUE(hears(*stream)) << end;
        }
    }
    EXPECT_EQ(log.count("The capture ended by itself!"), 0);
    support::removeInterface("near1");
}

TEST_F(AdapterTrouble, endsACaptureWithAReasonAndItsNextStartOpensTheAdapterAnew) {
    const auto stream = begin();
    const auto &facts = sonvex::IAdapterFacts::createInstance(stream->capture);
    std::uint8_t sequence = 0;
    const auto expectFramesOfTheStreamAlone = [&] {
        talker::RawSocket socket("far0");
        auto frame = support::makeFrame(stream->mac, 0, 2, 6, [](unsigned, unsigned) { return 5; });
        const int before = results;
        EXPECT_TRUE(support::waitFor([&] {
            frame[6] = 0x12; // another address, and an EtherType that the filter keeps away
            frame[12] = 0x88;
            socket.send(frame.data(), frame.size());
            frame[6] = 0x02;
            frame[12] = 0x22;
            frame[16] = sequence++;
            socket.send(frame.data(), frame.size());
            return results > before + 3;
        }));
        EXPECT_EQ(facts.getFramesOfNoStream(), 0U);
        EXPECT_EQ(facts.getStartError() + facts.getEndReason(), "");
    };
    expectFramesOfTheStreamAlone();
    for (const bool goesWhileRunning : {true, false, true}) {
        if (!goesWhileRunning) {
            stream->capture.stop();
            EXPECT_FALSE(facts.isCapturing());
        }
        support::removeInterface("near0");
        if (goesWhileRunning) {
            EXPECT_TRUE(support::waitFor([&] { return !facts.isCapturing(); }));
            EXPECT_EQ(facts.getEndReason(), "The interface disappeared");
            EXPECT_TRUE(stream->capture.isRunning());
            stream->capture.stop();
            stream->capture.start(); // while it is away
            EXPECT_FALSE(stream->capture.isRunning() || facts.isCapturing());
            EXPECT_NE(facts.getStartError().find("near0"), std::string::npos) << facts.getStartError();
        }
        support::makeVethPair("near0", "far0"); // if it did not run, back between a stop and the next start
        stream->capture.start();
        EXPECT_TRUE(stream->capture.isRunning() && facts.isCapturing());
        expectFramesOfTheStreamAlone();
    }
    EXPECT_EQ(log.count("The capture ended by itself! Error message:  The interface disappeared"), 2);
    EXPECT_EQ(log.count("Sniffer not configured properly! Please set a valid configuration!"), 2);
    support::removeInterface("near1");
}

TEST_F(AdapterTrouble, ofASecondAdapterEndsTheFirstOnesReceptionAndTheNextRunHasItAgain) {
    {
        const auto stream = begin();
        EXPECT_TRUE(hears(*stream));
        auto &gone = support::networkDevice("near1");
        support::removeInterface("near1");
        auto &configuration =
            sonvex::IStreamConfiguration::createInstance("second", "020000000077", gone, stream->device);
        EXPECT_THROW(ISonvex::createInstance().addRemoteStreamReceiver(configuration),
                     exceptions::InstanceNotCreateable);
        EXPECT_TRUE(support::waitFor([&] {
            stream->send(8);
            return log.count("dummyPacketHandler") > 0;
        }));
        EXPECT_TRUE(stream->capture.isRunning());
    }
    ISonvex::destroy();
    EXPECT_TRUE(hears(*begin()));
}

} // namespace
