#include "analyser/Diagnosis.h"

#include <functional>

#include <gtest/gtest.h>

namespace {

using analyser::AdapterState;
using analyser::Facts;

const std::string mac = "020000000001";

using Change = std::function<void(Facts &)>;

/// What is said of a stream after ten seconds of good reception and one in which something changes.
std::string diagnosisAfter(const Change &happens) {
    analyser::MonitorOptions options;
    options.device = "eth0";
    options.streams.push_back({mac, 2, 6});
    analyser::Diagnosis diagnosis(options);
    Facts facts;
    facts.seconds = 10.0;
    facts.channels = {{mac, 0, false}, {mac, 1, false}};
    facts.declaredChannels[mac] = 2;
    facts.log.packetsMissed = 7;
    facts.log.refused[mac] = {3, 5};
    diagnosis.examine(facts);
    EXPECT_TRUE(diagnosis.examine(facts).empty());
    happens(facts);
    std::string text;
    for (const auto &condition : diagnosis.examine(facts)) {
        text += condition.text;
    }
    return text;
}

void silence(Facts &facts) {
    facts.channels[0].overdue = facts.channels[1].overdue = true;
}

TEST(Diagnosis, namesTheCause) {
    const std::vector<std::pair<Change, std::string>> table = {
        {silence, "channel 0, 1: no more frames"},
        {[](Facts &facts) {
             silence(facts);
             facts.declaredChannels[mac] = 8;
             ++facts.log.refused[mac].channelAmount;
         },
         "declare 8 channels where up to 2 are configured (4 so far)"},
        {[](Facts &facts) { ++facts.log.refused[mac].channelAmount; },
         "lack samples: its frames are refused, they declare 2 channels"},
        {[](Facts &facts) {
             silence(facts);
             ++facts.log.refused[mac].dataLength;
         },
         "6 samples of 16 bits for each of 2 channels (6 so far)"},
        {[](Facts &facts) {
             facts.channels[1].overdue = true;
             facts.declaredChannels[mac] = 1;
         },
         "channel 1: its frames hold 1 channel only"},
        {[](Facts &facts) {
             silence(facts);
             ++facts.log.packetsMissed;
         },
         "packets are missed"},
        {[](Facts &facts) { facts.declaredChannels.clear(); }, "no frame of this stream"},
        {[](Facts &facts) { facts.adapterState = AdapterState::down; }, "'eth0' is down"},
        {[](Facts &facts) { facts.adapterState = AdapterState::gone; }, "'eth0' is gone"},
        {[](Facts &facts) { facts.adapterState = AdapterState::noLink; }, "no link"},
        {[](Facts &facts) { facts.log.capturesEnded = 1; }, "ended by itself"}};
    for (const auto &[change, expectedPart] : table) {
        const std::string text = diagnosisAfter(change);
        EXPECT_NE(text.find(expectedPart), std::string::npos) << expectedPart << ": " << text;
    }
    const auto justStarted = [](Facts &facts) {
        facts.declaredChannels.clear();
        facts.seconds = 1.0;
    };
    EXPECT_EQ(diagnosisAfter(justStarted), "");
    EXPECT_EQ(diagnosisAfter([](Facts &) {}), "");
}

} // namespace
