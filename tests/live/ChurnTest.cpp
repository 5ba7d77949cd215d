#include <deque>
#include <string>

#include <QThread>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/Churn.h"
#include "support/LiveStream.h"
#include "support/LogRecorder.h"
#include "support/waitFor.h"

// A host that changes whatever it can, all the time, while frames arrive.
namespace {

using namespace sonvex::iprocess;

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

TEST(Churn, leavesAnalysesAsTheLastChangeSaysAndLosesNoThread) {
    const support::LogRecorder log;
    support::LiveStream streams[] = {{2, 24, [](std::size_t, unsigned) { return 5; }},
                                     {2, 24, [](std::size_t, unsigned) { return 5; }}};
    auto &spectrum = ISpectrumConfig::createInstance("spectrum", 0);
    std::deque<Analysis> analyses; // on the external clock, internal, external, internal at last
    analyses.emplace_back(streams[0], ISoundLevelValueConfig::createInstance("levels", 288), 0);
    analyses.emplace_back(streams[1], spectrum, 0);
    analyses.emplace_back(streams[0], IWaveformConfig::createInstance("waveform", 24), 1);
    analyses.emplace_back(streams[1], IWaveformConfig::createInstance("waveform", 24, 2), 1);
    streams[0].capture.start();
    const auto send = [&] {
        streams[0].send(8);
        streams[1].send(8);
    };
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
    streams[0].capture.stop();
    const int added = log.count("threading::Worker::Worker \"churn\" Initialized");
    EXPECT_GT(added, 50);
    EXPECT_EQ(added, log.count("threading::Worker::~Worker \"churn\" DELETED"));
    EXPECT_EQ(added, log.count("threading::Controller::~Controller \"churn\" Worker thread ended"));
    support::deliverQueued();
}

} // namespace
