#include <atomic>
#include <memory>
#include <thread>

#include <QCoreApplication>
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

constexpr int patience = 20000; // ms

std::int16_t anySample(std::size_t, unsigned) {
    return 5;
}

TEST(LogHandler, mayWaitForTheHostsThread) {
    support::LiveStream stream(2, 48, anySample);
    auto &waveform = IWaveformConfig::createInstance("waveform", 48);
    auto &spectrum = ISpectrumConfig::createInstance("spectrum", 0);
    auto &levels = ISoundLevelValueConfig::createInstance("levels", 288);
    spectrum.setFftOrder(6);
    spectrum.setMovingAverageActive(true);
    int results = 0;
    auto &facade = ISonvex::createInstance();
    std::vector<sonvex::ihandles::IProcessorHandle *> processors;
    for (IProcessorConfigBase *config : std::initializer_list<IProcessorConfigBase *>{&waveform, &spectrum, &levels}) {
        processors.push_back(&stream.add("waits", *config, 0));
        facade.getMeteringDataSource(*processors.back()).bindChannelCallback([&](sonvex::IChannelData &) {
            ++results;
        });
    }
    std::atomic<int> waits{0};
    std::atomic<int> waiting{0};
    class : public QObject { // not a bare one: the thread sanitizer sees what is delivered to classes of our own
    } host;                  // on this thread
    std::atomic<bool> served{true};
    {
        QThread *const hostsThread = QThread::currentThread();
        std::atomic<bool> givenUp{false};
        const support::LogHandler handler([&](const QString &) {
            if (QThread::currentThread() == hostsThread || givenUp) {
                return;
            }
            const auto answer = std::make_shared<QSemaphore>();
            QMetaObject::invokeMethod(
                &host, [answer] { answer->release(); }, Qt::QueuedConnection);
            ++waits;
            ++waiting;
            givenUp = !answer->tryAcquire(1, patience);
            --waiting;
            served = served && !givenUp;
        });
        for (auto *processor : processors) {
            processor->start();
        }
        stream.capture.start();
        for (unsigned turn = 0; turn < 150 && served; ++turn) {
            stream.send(16, turn % 3); // gaps are told on the capture's thread
            waveform.setClockType(turn % 2 == 0 ? "Internal clock" : "External clock"); // on the processor's
            waveform.setRefreshRate(1 + turn % 5);
            spectrum.setFftOrder(6 + turn % 3); // which empties the averager's window, on both threads
            spectrum.setMovingAverageWindowSize(2 + turn % 7);
            spectrum.setRefreshRate(1 + turn % 7);
            for (auto *processor : processors) {
                processor->stop();
                processor->start();
            }
            if (turn % 30 == 0) {
                support::LiveStream another(1, 0, anySample); // into the table that the capture reads
            }
            QCoreApplication::processEvents();
        }
        EXPECT_TRUE(support::waitFor([&] {
            stream.send(16);
            return results > 100 && waits > 100;
        }));
        // What ends a thread waits for it, so the lines of these come before.
        stream.capture.stop();
        int idle = 0;
        EXPECT_TRUE(support::waitFor([&] { return (idle = waiting == 0 ? idle + 1 : 0) > 100; }));
    }
    EXPECT_TRUE(served) << "a lock was held while a line was written";
    ISonvex::destroy();
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
            EXPECT_TRUE(added.tryAcquire(1, patience / 2)) << "adding a stream waits for the log";
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
