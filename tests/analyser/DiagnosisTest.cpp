#include "analyser/Diagnosis.h"

#include <functional>

#include <gtest/gtest.h>

namespace {

using analyser::AdapterState;
using analyser::Facts;

const std::string mac = "020000000001";

struct Silence {
    const char *name;
    /// What changes from a second of good reception to the next.
    std::function<void(Facts &)> happens;
    /// Empty for nothing to say.
    const char *expectedPart;
};

class Diagnosis : public testing::TestWithParam<Silence> {};

TEST_P(Diagnosis, namesTheCause) {
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

    GetParam().happens(facts);
    std::string text;
    for (const auto &condition : diagnosis.examine(facts)) {
        text += condition.text;
    }
    EXPECT_NE(text.find(GetParam().expectedPart), std::string::npos) << text;
    EXPECT_EQ(text.empty(), std::string(GetParam().expectedPart).empty()) << text;
}

void silence(Facts &facts) {
    facts.channels[0].overdue = facts.channels[1].overdue = true;
}

INSTANTIATE_TEST_SUITE_P(
    Causes, Diagnosis,
    testing::Values(
        Silence{"none", [](Facts &) {}, ""}, Silence{"talkerStopped", silence, "channel 0, 1: no more frames"},
        Silence{"wrongChannels",
                [](Facts &facts) {
                    silence(facts);
                    facts.declaredChannels[mac] = 8;
                    ++facts.log.refused[mac].channelAmount;
                },
                "declare 8 channels where up to 2 are configured (4 so far)"},
        Silence{"refusedWhileResultsGoOn", [](Facts &facts) { ++facts.log.refused[mac].channelAmount; },
                "lack samples: its frames are refused, they declare 2 channels"},
        Silence{"wrongLength",
                [](Facts &facts) {
                    silence(facts);
                    ++facts.log.refused[mac].dataLength;
                },
                "6 samples of 16 bits for each of 2 channels (6 so far)"},
        Silence{"channelAbsent",
                [](Facts &facts) {
                    facts.channels[1].overdue = true;
                    facts.declaredChannels[mac] = 1;
                },
                "channel 1: its frames hold 1 channel only"},
        Silence{"gapsOnly",
                [](Facts &facts) {
                    silence(facts);
                    ++facts.log.packetsMissed;
                },
                "packets are missed"},
        Silence{"noFrameYet", [](Facts &facts) { facts.declaredChannels.clear(); }, "no frame of this stream"},
        Silence{"justStarted",
                [](Facts &facts) {
                    facts.declaredChannels.clear();
                    facts.seconds = 1.0;
                },
                ""},
        Silence{"adapterDown", [](Facts &facts) { facts.adapterState = AdapterState::down; }, "'eth0' is down"},
        Silence{"adapterGone", [](Facts &facts) { facts.adapterState = AdapterState::gone; }, "'eth0' is gone"},
        Silence{"noLink", [](Facts &facts) { facts.adapterState = AdapterState::noLink; }, "no link"},
        Silence{"captureEnded", [](Facts &facts) { facts.log.capturesEnded = 1; }, "ended by itself"}),
    [](const auto &silenced) { return silenced.param.name; });

} // namespace
