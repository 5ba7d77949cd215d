#include <thread>

#include <QSemaphore>
#include <QThread>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/FailingCall.h"
#include "support/LiveStream.h"
#include "support/LogHandler.h"
#include "support/NetworkNamespace.h"
#include "support/waitFor.h"

// A log handler is the host's code: it may take its time, or wait for the host's thread.
namespace {

using namespace sonvex::iprocess;

std::int16_t anySample(std::size_t, unsigned) {
    return 5;
}

TEST(LogHandler, isAwaitedByDestroyOnTheThreadsOfCapturesAndProcessors) {
    for (const char *line : {"Packets missed", "More samples requested"}) {
        support::LiveStream stream(2, 48, anySample);
        auto &handle = stream.add("waited", IWaveformConfig::createInstance("more than there are", 48001), 0);
        ISonvex::createInstance().getMeteringDataSource(handle).bindChannelCallback([](sonvex::IChannelData &) {});
        handle.start();
        std::atomic<int> entered{0};
        std::atomic<int> left{0};
        const support::LogHandler handler([&](const QString &text) {
            if (text.contains(QLatin1String(line))) {
                ++entered;
                QThread::msleep(50); // who does not wait is ahead
                ++left;
            }
        });
        stream.capture.start();
        EXPECT_TRUE(support::waitFor([&] {
            stream.send(8, 1);
            return entered > left;
        }));
        ISonvex::destroy();
        EXPECT_EQ(left, entered) << line;
        support::deliverQueued(); // what has come before
    }
}

TEST(LogHandler, thatStallsACaptureKeepsNobodyFromAddingStreams) {
    support::makeVethPair("stall0", "stall1");
    sonvex::INetworkDeviceManager::createInstance().scanDevices();
    support::LiveStream stream(2, 48, anySample);
    QSemaphore added;
    std::thread watchdog;
    {
        support::StalledLine missed("Packets missed");
        stream.capture.start();
        ASSERT_TRUE(support::waitFor([&] {
            stream.send(2, 1);
            return missed.hasStalled();
        }));
        watchdog = std::thread([&] {
            EXPECT_TRUE(added.tryAcquire(1, 10000)) << "adding a stream waits for the log";
            missed.release();
        });
        const support::LiveStream onTheSameAdapter(2, 48, anySample);
        // The frames of all adapters go to the new one's streams from now on.
        const support::LiveStream onAnotherOne(2, 48, anySample, "stall0", "stall1");
        added.release();
        watchdog.join();
    }
    ISonvex::destroy();
    support::removeInterface("stall0");
}

TEST(LogHandler, thatHearsOfAFailedCaptureMayHaveItRestartedAtOnce) {
    support::LiveStream stream(2, 48, anySample);
    auto &handle = stream.add("restarted", IWaveformConfig::createInstance("waveform", 48), 0);
    int results = 0;
    ISonvex::createInstance().getMeteringDataSource(handle).bindChannelCallback(
        [&](sonvex::IChannelData &) { ++results; });
    handle.start();
    {
        support::StalledLine ended("PCAP listener INACTIVE"); // the loop is over, its thread is not
        const support::FailingCall failure(support::Call::loop, 1);
        stream.capture.start();
        ASSERT_TRUE(support::waitFor([&] { return ended.hasStalled(); }));
        stream.capture.stop();
        ended.release();
        stream.capture.start();
    }
    EXPECT_TRUE(support::waitFor([&] {
        stream.send(8);
        return results > 3;
    }));
    ISonvex::destroy();
}

} // namespace
