#include "analyser/fitStreams.h"

#include <gtest/gtest.h>

#include "common/Refusal.h"
#include "discovery/Survey.h"
#include "support/refusalOf.h"
#include "support/wireFrames.h"

namespace {

/// A stream of twenty frames with these data lengths in turn.
void hear(discovery::Survey &survey, std::uint64_t source, wire::Audio audio, const std::vector<unsigned> &lengths) {
    for (unsigned i = 0; i < 20; ++i) {
        audio.sequence = i;
        audio.length = lengths[i % lengths.size()];
        const auto frame = wire::ethernet(source, 0x22f0, audio.payload());
        survey.add({frame.data(), frame.size()}, frame.size(), i * 125'000);
    }
}

/// Device 1 sends two streams, device 2 one of 96 kHz and a clock, device 3 what can't be monitored, and device 4
/// frames whose lengths differ.
discovery::Findings heard() {
    discovery::Survey survey;
    wire::Audio audio;
    hear(survey, 0x020000000001, audio, {24});
    audio.id = 0x0200000000010001;
    audio.format = 2;
    audio.channels = 8;
    hear(survey, 0x020000000001, audio, {192});
    audio.id = 0x0200000000020000;
    audio.rate = 7;
    hear(survey, 0x020000000002, audio, {384});
    const auto clock = wire::ethernet(0x020000000002, 0x22f0, wire::clockReference(0x0200000000020001, 0, 0));
    survey.add({clock.data(), clock.size()}, clock.size(), 0);
    audio.id = 0x0200000000030000;
    audio.format = 5;
    hear(survey, 0x020000000003, audio, {192});
    wire::Audio uneven;
    uneven.id = 0x0200000000040000;
    hear(survey, 0x020000000004, uneven, {20, 24});
    return survey.describe(1);
}

std::vector<analyser::StreamRequest> requests(const std::string &stream) {
    const QStringList arguments = {QString(),
                                   QStringLiteral("monitor"),
                                   QStringLiteral("--device"),
                                   QStringLiteral("lo"),
                                   QStringLiteral("--stream"),
                                   QString::fromStdString(stream)};
    return std::get<analyser::MonitorOptions>(analyser::parseCommandLine(arguments)).streams;
}

TEST(FitStreams, takeWhatIsLeftOutFromTheWire) {
    const auto findings = heard();
    const std::string packet = " per channel in a packet, ";
    const std::vector<std::pair<std::string, std::string>> table = {
        {"0200000000010000", "2 channels, 6 samples" + packet + "int16, 48000 Hz"},
        {"0200000000010001", "8 channels, 6 samples" + packet + "int32, 48000 Hz"},
        {"0200000000010001,channels=3,rate=96000", "3 channels, 6 samples" + packet + "int32, 96000 Hz"},
        {"020000000002", "8 channels, 12 samples" + packet + "int32, 96000 Hz"},
        {"020000000002,format=int24,samples=3", "8 channels, 3 samples" + packet + "int24, 96000 Hz"},
        {"020000000004", "2 channels, as many samples as come" + packet + "int16, 48000 Hz"},
        {"0200000000020000,channels=1,samples=2,format=int24", "1 channel, 2 samples" + packet + "int24, 48000 Hz"},
        {"020000000009,rate=96000", "2 channels, 6 samples" + packet + "int16, 96000 Hz"},
        {"020000000001", "! several streams, name one by its ID: 0200000000010000, 0200000000010001"},
        {"0200000000020001", "! can't be monitored: it is a clock reference"},
        {"020000000003", "! can't be monitored: its samples have the format AES3"}};
    for (const auto &[stream, expected] : table) {
        SCOPED_TRACE(stream);
        const auto asked = requests(stream);
        const auto fit = [&, &asked = asked] { return analyser::fitStreams(asked, findings); };
        EXPECT_EQ(analyser::areHeard(asked, findings),
                  stream.find("09,") == std::string::npos && stream != "0200000000020001"); // of one frame
        if (expected[0] == '!') {
            const std::string refusal = support::refusalOf<common::Refusal>(fit).what();
            EXPECT_NE(refusal.find(expected.substr(2)), std::string::npos) << refusal;
            continue;
        }
        const auto fitted = fit();
        EXPECT_EQ(fitted.streams.at(0).toString(), expected);
        EXPECT_EQ(fitted.notes.empty(), stream.find("09,") == std::string::npos);
    }
}

TEST(FitStreams, chooseAllThatCanBeMonitoredWithinTheirBounds) {
    const auto findings = heard();
    const auto all = analyser::allStreams(findings, 64);
    ASSERT_EQ(all.streams.size(), 4U);
    EXPECT_EQ(all.streams[2].key, "0200000000020000");
    ASSERT_EQ(all.notes.size(), 2U);
    EXPECT_EQ(all.notes[1].substr(0, 51), "the stream 0200000000030000 can't be monitored: its");

    std::vector<std::string> notes;
    const auto overview = analyser::overviewOf(all.streams, 9, notes);
    EXPECT_EQ(overview.at("levels").size(), 9U);
    EXPECT_EQ(overview.at("levels").back(), "6@0200000000010001");
    EXPECT_EQ(overview.at("waveform"), std::vector<std::string>{"0:480@0200000000010000"});
    EXPECT_EQ(notes.at(0), "the stream 0200000000020000 has 96000 Hz, so it has no levels");
    EXPECT_NE(notes.at(1).find("those of 3 more are left out"), std::string::npos);
    EXPECT_NE(analyser::allStreams(findings, 1).notes.back().find("3 more streams"), std::string::npos);
}

} // namespace
