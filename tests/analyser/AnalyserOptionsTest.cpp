#include "analyser/AnalyserOptions.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "analyser/fitStreams.h"
#include "common/Refusal.h"

namespace {

using analyser::MonitorOptions;

/// Splits at blanks; "~" stands for an empty argument.
analyser::Command parse(const std::string &line) {
    QStringList arguments = QString::fromStdString("sonvex-analyser " + line).split(QLatin1Char(' '));
    arguments.replaceInStrings(QStringLiteral("~"), QString());
    return analyser::parseCommandLine(arguments);
}

MonitorOptions parseMonitor(const std::string &options) {
    return std::get<MonitorOptions>(parse("monitor --device lo " + options));
}

/// Of streams that nothing was heard of.
monitoring::SessionSettings parseSession(const std::string &options) {
    const auto parsed = parseMonitor(options);
    return analyser::settingsFor(parsed, analyser::fitStreams(parsed.streams, {}).streams);
}

TEST(AnalyserOptions, fillInWhatTheCommandLineLeavesOut) {
    const std::string line = "--stream 020000000001 --waveform 1:480";
    const auto options = parseMonitor(line);
    const auto session = parseSession(line);
    EXPECT_EQ(session.device, "lo");
    EXPECT_EQ(session.streams.at(0).toString(), "2 channels, 6 samples per channel in a packet, 16 bits, 48000 Hz");
    EXPECT_EQ(session.analyses.at(0)->channel().stream, "020000000001");
    EXPECT_FALSE(session.clock.internal);
    EXPECT_EQ(session.clock.period, 480U);
    EXPECT_GE(session.bufferSize, 48000U + 480U);
    EXPECT_FALSE(options.seconds);
    EXPECT_EQ(options.outputs.at(0).format, analyser::Format::live);
}

TEST(AnalyserOptions, readAllThatCanBeSaid) {
    const std::string line =
        "--stream 02:00:00:00:00:aB,samples=48,channels=8 --stream 02-00-00-00-00-02,format=int24,rate=96000 "
        "--stream 02:00:00:00:00:03.00-0A,channels=1,samples=0,format=float32 --waveform 7:1 --waveform "
        "0:96000@02:00:00:00:00:02 --levels 0@020000000003000a --clock internal:2147483647 --buffer 5 --seconds 0.5 "
        "--format csv --output a --log b --verbose --also json:c:d --wait";
    const auto options = parseMonitor(line);
    const auto session = parseSession(line);
    const std::vector<std::pair<std::string, std::string>> streams = {
        {"0200000000ab", "8 channels, 48 samples per channel in a packet, 16 bits, 48000 Hz"},
        {"020000000002", "2 channels, 6 samples per channel in a packet, int24, 96000 Hz"},
        {"020000000003000a", "1 channel, as many samples as come per channel in a packet, float32, 48000 Hz"}};
    for (std::size_t i = 0; i < streams.size(); ++i) {
        EXPECT_EQ(session.streams.at(i).key, streams[i].first);
        EXPECT_EQ(session.streams.at(i).toString(), streams[i].second);
        EXPECT_EQ(options.streams.at(i).isComplete(), i == 2);
    }
    EXPECT_EQ(session.analyses.at(0)->name(), "waveform_0200000000ab_ch7");
    EXPECT_EQ(session.analyses.at(1)->amount(), 96000U);
    EXPECT_EQ(session.analyses.at(1)->channel().stream, "020000000002");
    EXPECT_EQ(session.analyses.at(2)->name(), "levels_020000000003000a_ch0");
    EXPECT_TRUE(session.clock.internal);
    EXPECT_EQ(session.clock.period, 2147483647U);
    EXPECT_EQ(session.bufferSize, 5U);
    EXPECT_EQ(options.seconds, 0.5);
    EXPECT_EQ(options.outputs.at(0).format, analyser::Format::csv);
    EXPECT_EQ(options.outputs.at(0).file, "a");
    EXPECT_EQ(options.outputs.at(1).file, "c:d");
    EXPECT_EQ(options.outputs.at(1).format, analyser::Format::json);
    EXPECT_TRUE(options.outputs.at(1).waits);
    EXPECT_EQ(options.log.file, "b");
    EXPECT_TRUE(options.log.verbose);
}

TEST(AnalyserOptions, giveEachKindItsAmountAndClock) {
    const std::string analyses = "--stream 020000000001 --waveform 1:96 --spectrum 0:12:average=ms:500 "
                                 "--spectrum 1:9:average=cycles:7 --levels 1 --levels 0 ";
    for (const bool internal : {false, true}) {
        const auto session = parseSession(analyses + (internal ? "--clock internal:50" : "--clock external:960"));
        ASSERT_EQ(session.analyses.size(), 5U);
        const auto &spectrum = *session.analyses[1];
        EXPECT_EQ(spectrum.name(), "spectrum_020000000001_ch0");
        EXPECT_EQ(spectrum.amount(), 4096U);
        EXPECT_EQ(spectrum.settings()[1].value, "11.71875");
        EXPECT_EQ(spectrum.settings()[2].value, "ms:500");
        EXPECT_EQ(session.analyses[2]->settings()[2].value, "cycles:7");
        EXPECT_EQ(spectrum.clock().toString(), internal ? "internal:50 ms" : "external:960 samples");
        const auto &levels = *session.analyses[3];
        EXPECT_EQ(levels.channel().number, 1U);
        EXPECT_EQ(levels.amount(), internal ? 2880U : 5760U);
        EXPECT_EQ(levels.clock().toString(), internal ? "external:480 samples" : "external:960 samples");
        EXPECT_EQ(session.bufferSize, 48000U + std::max(levels.amount(), 4096U));
        EXPECT_FALSE(session.reference);
    }
    EXPECT_EQ(parseSession(analyses + "--reference 94.5").reference, 94.5);
}

TEST(AnalyserOptions, sayWhatCanNotBeHad) {
    const auto limits = [](const std::string &line) {
        const auto session = parseSession("--stream 020000000001 " + line);
        return monitoring::describeLimits(session.analyses, session.bufferSize);
    };
    EXPECT_EQ(limits("--waveform 0:480 --spectrum 0:9 --levels 0"), "");
    EXPECT_EQ(limits("--spectrum 0:8 --spectrum 1:10"),
              "spectra of 256 samples leave out 224 of each 480 samples of the clock");
    EXPECT_EQ(limits("--waveform 0:480 --levels 0 --clock internal:20"),
              "levels can't be measured on a timer and stay on the clock external:480 samples");
    EXPECT_EQ(
        limits("--waveform 0:3000 --levels 0 --levels 1 --buffer 2879"),
        "the buffer holds 2879 samples, so curves of more are cut to that; the buffer holds 2879 samples, so levels "
        "are not gapless: of each 2880 samples the last count as silence, and those before them are left out");
}

TEST(AnalyserOptions, refuseEachFaultByItsName) {
    const std::string stream = "monitor --device lo --stream 020000000001 ";
    const std::string waveform = stream + "--waveform 0:480 ";
    const std::vector<std::pair<std::string, std::string>> table = {
        {"~", "a command is missing"},
        {"watch", "'watch'"},
        {"devices --format csv", "'csv'"},
        {"devices --device lo", "device"},
        {"streams", "--device"},
        {"streams --device lo --format live", "'live'"},
        {"streams --device lo --seconds 3601", "0.001 to 3600"},
        {"monitor", "--device"},
        {stream, "''"},
        {waveform + "--device eth0", "twice"},
        {waveform + "--format xml", "'xml'"},
        {waveform + "--output ~", "--output"},
        {waveform + "--also live:file", "'live'"},
        {waveform + "--also csv:", "csv:FILE"},
        {waveform + "--stream 02000000000", "'02000000000'"},
        {waveform + "--stream 02:00:00:00:0:001", "MAC"},
        {waveform + "--stream :0200000000010000", "MAC"},
        {waveform + "--stream 020000000002,channels=0", "'0'"},
        {waveform + "--stream 020000000002,channels=2,channels=2", "twice"},
        {waveform + "--stream 020000000002,speed=1", "'speed=1'"},
        {waveform + "--stream 020000000002,rate=47999", "'47999' is none of 8000, 16000"},
        {waveform + "--stream 020000000002,format=int20", "'int20' is none of int16, int24, int32, float32"},
        {waveform + "--stream 0200000000020001,rate=96000 --levels 0@0200000000020001", "at 48000 Hz only"},
        {waveform + "--stream 02-00-00-00-00-01", "twice"},
        {stream + "--spectrum 0", "CHANNEL:ORDER"},
        {stream + "--spectrum 0:1", "'1'"},
        {stream + "--spectrum 0:25", "'25'"},
        {stream + "--spectrum 0:10:average=days:4", "average=cycles:N"},
        {stream + "--spectrum 0:10:average=cycles:1", "'1'"},
        {stream + "--spectrum 0:10:average=ms:19", "2 to 10000 cycles, of 10 ms"},
        {stream + "--spectrum 0:10:average=ms:100 --clock external:47", "external:48"},
        {stream + "--spectrum 0:12 --buffer 4095", "needs 4096 samples"},
        {stream + "--levels 0:480", "CHANNEL[@STREAM]"},
        {stream + "--levels 0 --levels 0@020000000001", "two sets of levels"},
        {stream + "--levels 0 --clock external:4000000", "at most external:2796202"},
        {stream + "--waveform 480", "CHANNEL:AMOUNT"},
        {"monitor --device lo --stream 020000000001,channels=2 --waveform 2:480", "0 to 1"},
        {stream + "--waveform 255:480", "'255'"},
        {stream + "--waveform 0:0", "'0'"},
        {stream + "--waveform 0:480@020000000002", "no --stream"},
        {waveform + "--waveform 0:960@02:00:00:00:00:01", "two waveforms"},
        {waveform + "--clock 480", "'480'"},
        {waveform + "--clock internal:2147483648", "2147483647"},
        {waveform + "--buffer -1", "'-1'"},
        {waveform + "--seconds 0", "'0'"},
        {waveform + "--seconds nan", "'nan'"},
        {waveform + "--seconds 1s", "'1s'"}};
    for (const auto &[line, expectedPart] : table) {
        try {
            parse(line);
            ADD_FAILURE() << "accepted: " << line;
        } catch (const common::Refusal &refusal) {
            EXPECT_EQ(refusal.exitStatus(), 2);
            EXPECT_NE(std::string(refusal.what()).find(expectedPart), std::string::npos) << refusal.what();
        }
    }
}

} // namespace
