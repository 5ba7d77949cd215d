#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <string>

#include <QSemaphore>
#include <QThread>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/Churn.h"
#include "support/LiveStream.h"
#include "support/LogHandler.h"
#include "support/LogRecorder.h"
#include "support/waitFor.h"

// A host that changes whatever it can, all the time, while frames arrive.
namespace {

using namespace sonvex::iprocess;

std::int16_t anySample(std::size_t, unsigned) {
    return 5;
}

struct Analysis {
    Analysis(const support::LiveStream &stream, ISampleProcessorConfigBase &config, unsigned char channel)
        : config(config), process(sonvex::IProcessConfiguration::createInstance("churn", config, stream.mac, channel)),
          handle(ISonvex::createInstance().addProcessor(process)) {
        ISonvex::createInstance().getMeteringDataSource(handle).bindChannelCallback([this](sonvex::IChannelData &data) {
            ++results;
            lastAmount = data.getVectorData().getY().size();
        });
        handle.start();
    }

    ISampleProcessorConfigBase &config;
    sonvex::IProcessConfiguration &process;
    sonvex::ihandles::IProcessorHandle &handle;
    int results = 0;
    std::size_t lastAmount = 0;
};

class Churn : public testing::Test {
protected:
    Churn() {
        analyses.emplace_back(streams[0], ISoundLevelValueConfig::createInstance("levels", 288), 0);
        analyses.emplace_back(streams[1], spectrum, 0);
        analyses.emplace_back(streams[0], IWaveformConfig::createInstance("waveform", 24), 1);
        analyses.emplace_back(streams[1], IWaveformConfig::createInstance("waveform", 24, 2), 1);
        streams[0].capture.start();
    }
    ~Churn() override {
        ISonvex::destroy();
        support::deliverQueued();
    }

    /// @param dropped packets of each stream before, which are told on the capture's thread
    void send(unsigned dropped = 0) {
        for (support::LiveStream &stream : streams) {
            stream.send(8, dropped);
        }
    }

    support::LiveStream streams[2] = {{2, 24, anySample}, {2, 24, anySample}};
    ISpectrumConfig &spectrum = ISpectrumConfig::createInstance("spectrum", 0);
    std::deque<Analysis> analyses;
};

TEST_F(Churn, leavesAnalysesAsTheLastChangeSaysAndLosesNoThread) {
    const support::LogRecorder log;
    const auto added = static_cast<int>(analyses.size());
    support::Churn churn(support::Churn::Values::Any);
    for (int turn = 0; turn < 1000; ++turn) {
        Analysis &analysis = analyses[churn.below(analyses.size())];
        churn.change(analysis.config, analysis.process, analysis.handle);
        streams[churn.below(2)].buffer.setClockSignalingSampleAmount(6 * churn.below(8));
        send();
        support::deliverQueued();
        QThread::usleep(500);
    }
    spectrum.setFftOrder(4); // 8 bins
    std::size_t amount = 7;  // that of the levels, whatever they are taken from
    for (Analysis &analysis : analyses) {
        // A channel on the internal clock gets no signals to fall back on.
        const bool internal = amount % 2 == 0;
        analysis.config.setClockType(internal ? "Internal clock" : "External clock");
        analysis.config.setRefreshRate(5);
        analysis.config.setSampleAmount(static_cast<unsigned>(amount));
        streams[internal ? 1 : 0].buffer.setClockSignalingSampleAmount(internal ? 0 : 48);
        analysis.handle.start();
        const auto delivers = [&](auto &&condition) {
            return support::waitFor([&] {
                send();
                return condition();
            });
        };
        EXPECT_TRUE(delivers([&] { return analysis.lastAmount == amount; })) << amount;
        analysis.results = 0;
        EXPECT_TRUE(delivers([&] { return analysis.results >= 10; })) << amount;
        EXPECT_EQ(analysis.lastAmount, amount++);
    }
    for (Analysis &analysis : analyses) {
        ISonvex::createInstance().removeProcessor(analysis.handle);
    }
    const int made = added + log.count("threading::Worker::Worker \"churn\" Initialized");
    EXPECT_GT(made, 50);
    EXPECT_EQ(made, log.count("threading::Worker::~Worker \"churn\" DELETED"));
    EXPECT_EQ(made, log.count("threading::Controller::~Controller \"churn\" Worker thread ended"));
}

TEST_F(Churn, isBorneByALogHandlerThatWaitsForTheHostsThread) {
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
            givenUp = !answer->tryAcquire(1, 20000);
            --waiting;
            served = served && !givenUp;
        });
        support::Churn churn(support::Churn::Values::Delivering, false); // what removes one waits for its lines
        for (int turn = 0; turn < 500 && served; ++turn) {
            send(turn % 3 == 0 ? 1 : 0);
            const Analysis &analysis = analyses[churn.below(analyses.size())];
            churn.change(analysis.config, analysis.process, analysis.handle);
            if (turn % 100 == 0) {
                support::LiveStream another(1, 0, anySample); // into the table that the capture reads
            }
            support::deliverQueued();
        }
        EXPECT_TRUE(support::waitFor([&] {
            send();
            return waits > 100 && std::all_of(analyses.begin(), analyses.end(),
                                              [](const Analysis &each) { return each.results > 10; });
        }));
        // What ends a thread waits for it, so the lines of these come before.
        streams[0].capture.stop();
        int idle = 0;
        EXPECT_TRUE(support::waitFor([&] { return (idle = waiting == 0 ? idle + 1 : 0) > 100; }));
    }
    EXPECT_TRUE(served) << "a lock was held while a line was written";
}

} // namespace
