#include "monitoring/Health.h"

#include <functional>

#include <gtest/gtest.h>

#include "monitoring/describe.h"
#include "monitoring/results.h"

namespace {

using monitoring::AdapterLink;
using monitoring::AnalysisStatus;
using monitoring::Status;

using Change = std::function<void(Status &)>;

/// What is said of a stream after ten seconds of good reception and one in which something changes.
std::string healthAfter(const Change &happens) {
    monitoring::SessionSettings settings;
    settings.device = "eth0";
    settings.streams.push_back(
        {"020000000001", 2, 6, common::find(common::aafFormats, &common::AafFormat::name, "int24")});
    monitoring::Health health;
    Status status;
    status.seconds = -10.0;
    for (const char *channel : {"0:48", "1:48"}) {
        status.analyses.push_back(
            {support::makeAnalysis("waveform", channel), 9, 10.0, AnalysisStatus::State::running});
    }
    monitoring::StreamStatus stream;
    stream.key = "020000000001";
    stream.seen = true;
    stream.declared = {4, 2, 48, 48000};
    stream.gaps = 7;
    stream.refusedChannelAmount = 3;
    stream.refusedDataLength = 5;
    status.streams.push_back(stream);
    health.examine(status); // what was before
    status.seconds = 10.0;
    EXPECT_TRUE(health.examine(status).empty());
    happens(status);
    std::string text;
    for (const auto &condition : health.examine(status)) {
        text += monitoring::describe(condition, settings);
    }
    return text;
}

void silence(Status &status) {
    for (auto &analysis : status.analyses) {
        analysis.state = AnalysisStatus::State::silent;
    }
}

Change linkIs(AdapterLink::State state) {
    return [state](Status &status) { status.adapter.link = state; };
}

TEST(Health, namesTheCause) {
    const std::vector<std::pair<Change, std::string>> table = {
        {silence, "channel 0, 1: no more frames"},
        {[](Status &status) {
             silence(status);
             status.streams[0].declared.channels = 8;
             ++status.streams[0].refusedChannelAmount;
         },
         "declare 8 channels where up to 2 are configured (4 so far); they declare int16, 8 channels, 3 samples, 48000 "
         "Hz: "
         "--stream 020000000001,channels=8,samples=3,format=int16"},
        {[](Status &status) { ++status.streams[0].refusedChannelAmount; },
         "lack samples: its frames are refused, they declare 2 channels"},
        {[](Status &status) {
             silence(status);
             ++status.streams[0].refusedDataLength;
         },
         "6 samples of 24 bits (int24) for each of 2 channels (6 so far); they declare int16, 2 channels, 12 samples"},
        {[](Status &status) {
             ++status.streams[0].refusedFormat;
             status.streams[0].declared = {2, 8, 192, 96000};
         },
         "lack samples: its frames are refused, their samples are no int24 (1 so far); they declare int32, 8 channels, "
         "6 samples, 96000 Hz: --stream 020000000001,channels=8,samples=6,format=int32,rate=96000"},
        {[](Status &status) {
             ++status.streams[0].refusedSampleRate;
             status.streams[0].declared = {5, 2, 8, 0};
         },
         "their rate is not 48000 Hz (1 so far); they declare format 5, 2 channels, 8 bytes"},
        {[](Status &status) { ++status.streams[0].refusedIncomplete; }, "they end before their samples do (1 so far)"},
        {[](Status &status) {
             status.analyses[1].state = AnalysisStatus::State::silent;
             status.streams[0].declared.channels = 1;
         },
         "channel 1: its frames hold 1 channel only"},
        {[](Status &status) {
             silence(status);
             ++status.streams[0].gaps;
         },
         "packets are missed"},
        {[](Status &status) {
             silence(status);
             ++status.streams[0].taken;
         },
         "frames arrive, but no result"},
        {[](Status &status) { status.streams[0].seen = false; }, "channel 0, 1: no frame of this stream"},
        {linkIs(AdapterLink::State::down), "'eth0' is down"},
        {linkIs(AdapterLink::State::gone), "'eth0' is gone"},
        {linkIs(AdapterLink::State::noLink), "no link"},
        {[](Status &status) { status.adapter.endReason = "The interface disappeared"; },
         "ended by itself: The interface disappeared"}};
    for (const auto &[change, expectedPart] : table) {
        const std::string text = healthAfter(change);
        EXPECT_NE(text.find(expectedPart), std::string::npos) << expectedPart << ": " << text;
    }
    const auto justStarted = [](Status &status) {
        status.streams[0].seen = false;
        status.seconds = 1.0;
    };
    EXPECT_EQ(healthAfter(justStarted), "");
    EXPECT_EQ(healthAfter([](Status &) {}), "");
}

TEST(Health, remembersLossesThatComeAgainAndAgain) {
    monitoring::Health health;
    Status status;
    status.streams.emplace_back();
    int conditions = 0;
    for (int second = 0; second < 20; ++second) {
        status.seconds = second;
        status.streams[0].refusedDataLength += second % 3 == 1 && second < 12 ? 1 : 0;
        const auto found = health.examine(status);
        conditions += static_cast<int>(found.size());
        EXPECT_EQ(found.empty(), second < 1 || second >= 15) << second;
    }
    EXPECT_EQ(conditions, 14);
}

} // namespace
