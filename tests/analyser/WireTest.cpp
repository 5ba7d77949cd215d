#include <cmath>
#include <map>
#include <memory>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include "discovery/Survey.h"
#include "discovery/listen.h"
#include "support/NetworkNamespace.h"
#include "support/Program.h"

// The monitor on streams as networks have them.
namespace {

std::unique_ptr<support::Program> monitor(const std::string &device, std::vector<std::string> more,
                                          const std::string &seconds = "2") {
    more.insert(more.begin(), {"monitor", "--device", device, "--format", "json", "--seconds", seconds});
    return std::make_unique<support::Program>(ANALYSER_PROGRAM, more);
}

QJsonValue member(const QJsonValue &value, const char *path) {
    QJsonValue found = value;
    for (const QString &name : QString::fromLatin1(path).split(QLatin1Char('.'))) {
        found = found[name];
    }
    return found;
}

void waitForStreams(const std::string &device, std::size_t amount) {
    discovery::listen(device, std::chrono::seconds(20), {},
                      [&](const discovery::Survey &heard) { return heard.streamAmount() >= amount; });
}

/// The objects that a run has written, by their type.
std::map<std::string, std::vector<QJsonObject>> objects(const std::string &text) {
    std::map<std::string, std::vector<QJsonObject>> found;
    for (const QByteArray &line : QByteArray::fromStdString(text).split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        found[member(object, "type").toString().toStdString()].push_back(object);
    }
    return found;
}

TEST(Wire, isMonitoredWholeWithoutAWordAndAnswersWrongAssumptions) {
    support::makeVethPair("wire0", "wire1");
    auto silence = monitor("lo", {});
    support::Program talker(SONVEX_TALKER,
                            {"--device", "wire0", "--source", "020000000001", "--streams", "8", "--channels", "8",
                             "--format", "int32", "--vlan", "2:5", "--signal", "ramp"});
    waitForStreams("wire1", 8);
    const auto all = monitor("wire1", {})->wait();
    ASSERT_EQ(all.exitStatus, 0) << all.err;
    auto found = objects(all.out);
    const QJsonObject &summary = found["summary"].at(0);
    int metered = 0;
    for (const auto &analysis : member(summary, "analyses").toArray()) {
        const bool isLevels = member(analysis, "name").toString().startsWith(QLatin1String("levels"));
        metered += isLevels && member(analysis, "results").toInt() > 0 ? 1 : 0;
    }
    EXPECT_EQ(metered, 64) << all.out;
    EXPECT_FALSE(found["waveform"].empty() || found["spectrum"].empty());
    const QJsonArray streams = member(summary, "streams").toArray();
    ASSERT_EQ(streams.size(), 8);
    EXPECT_EQ(member(streams[7], "streamId").toString(), QStringLiteral("0200000000010007"));
    EXPECT_EQ(member(streams[7], "vlan.id").toInt(), 2);
    EXPECT_EQ(member(streams[7], "vlan.priority").toInt(), 5);
    EXPECT_EQ(member(streams[7], "declared.format").toString(), QStringLiteral("int32"));
    EXPECT_GT(member(streams[7], "clock.timestampsValid").toInt(), 0);
    const double distance = member(streams[7], "clock.arrivalDistance.mean").toDouble(); // on a busy machine more
    EXPECT_TRUE(distance > 100e-6 && distance < 10e-3) << distance;

    support::expectRefusal(monitor("wire1", {"--stream", "02:00:00:00:00:01"})->wait(), 2,
                           "name one by its ID: 0200000000010000, 0200000000010001, ");
    const std::string stream = "0200000000010003";
    const std::string right = "they declare int32, 8 channels, 6 samples, 48000 Hz: --stream " + stream +
                              ",channels=8,samples=6,format=int32\n";
    const std::vector<std::pair<std::string, const char *>> table = {
        {"channels=8,samples=6,format=int16", "framesRefused.format"},
        {"channels=8,samples=6,format=int32,rate=96000", "framesRefused.sampleRate"},
        {"channels=8,samples=12,format=int32", "framesRefused.dataLength"},
        {"channels=4,samples=6,format=int32", "framesRefused.channelAmount"}};
    std::vector<std::unique_ptr<support::Program>> runs;
    for (const auto &[settings, cause] : table) {
        runs.push_back(monitor("wire1", {"--stream", stream + ',' + settings, "--waveform", "0:480"}, "3"));
    }
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(table[i].first);
        const char *cause = table[i].second;
        const auto result = runs[i]->wait();
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_NE(result.err.find(right), std::string::npos) << result.err;
        const QJsonObject end = objects(result.out)["summary"].at(0);
        EXPECT_GT(member(end, cause).toInt(), 0) << result.out;
        EXPECT_EQ(member(end, cause).toInt(), member(member(end, "streams").toArray()[0], cause).toInt());
    }
    const auto nothing = silence->wait();
    EXPECT_EQ(nothing.exitStatus, 1);
    EXPECT_NE(nothing.err.find("mirror port"), std::string::npos) << nothing.err;
    support::removeInterface("wire1");
}

TEST(Wire, bringsEachFormatToTheLastBit) {
    struct Case {
        const char *format;
        int rate;
        std::unique_ptr<support::Program> talker;
    };
    std::vector<Case> cases;
    std::vector<std::string> arguments = {"--stream", "020000000009", "--levels", "0@020000000009"}; // nobody's
    for (const auto &[format, rate] :
         {std::pair("int16", 48000), {"int24", 192000}, {"int32", 96000}, {"float32", 48000}}) {
        const std::string source = "02000000000" + std::to_string(cases.size() + 1);
        cases.push_back(
            {format, rate,
             std::make_unique<support::Program>(
                 SONVEX_TALKER, std::vector<std::string>{"--device", "lo", "--source", source, "--format", format,
                                                         "--rate", std::to_string(rate), "--signal", "ramp"})});
        arguments.insert(arguments.end(),
                         {"--stream", source, "--waveform", "1:480@" + source, "--spectrum", "1:8@" + source});
    }
    const std::string broken = "02000000000a";
    std::vector<std::string> faults = {"--device", "lo", "--source", broken, "--format", "float32", "--channels", "1"};
    for (int frame = 0; frame < 100; ++frame) {
        faults.insert(faults.end(), {"--non-finite", std::to_string(1000 * frame)});
    }
    const support::Program brokenTalker(SONVEX_TALKER, faults);
    arguments.insert(arguments.end(), {"--stream", broken, "--levels", "0@" + broken});
    waitForStreams("lo", cases.size() + 1);
    const auto result = monitor("lo", arguments)->wait();
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.err.find(" s: 020000000009; what --stream leaves out is"), std::string::npos) << result.err;
    auto found = objects(result.out);
    std::map<QString, int> exact;
    for (const QJsonObject &waveform : found["waveform"]) {
        const QJsonArray y = member(waveform, "y").toArray();
        const double first = y.at(0).toDouble() * 32768;
        bool isRamp = y.size() == 480 && first == std::floor(first);
        for (int i = 0; i < y.size(); ++i) {
            isRamp = isRamp && y.at(i).toDouble() * 32768 == static_cast<std::int16_t>(static_cast<int>(first) + i);
        }
        exact[member(waveform, "stream").toString()] += isRamp || member(waveform, "behindGap").toBool() ? 1 : -1000;
    }
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].format);
        const QString stream = QStringLiteral("02000000000%1").arg(i + 1);
        EXPECT_GT(exact[stream], 10);
        const auto spectrum = std::find_if(found["spectrum"].begin(), found["spectrum"].end(), [&](const auto &object) {
            return member(object, "stream").toString() == stream;
        });
        ASSERT_NE(spectrum, found["spectrum"].end());
        EXPECT_EQ(member(*spectrum, "binWidth").toDouble(), cases[i].rate / 256.0);
        EXPECT_EQ(member(member(found["settings"].at(0), "streams").toArray()[static_cast<int>(i) + 1], "format")
                      .toString()
                      .toStdString(),
                  cases[i].format);
    }
    const QJsonArray streams = member(found["summary"].at(0), "streams").toArray();
    EXPECT_GT(member(streams.last(), "nonFiniteSamples").toInt(), 0) << result.out.substr(result.out.size() - 2000);
    EXPECT_EQ(member(streams.first(), "nonFiniteSamples").toInt(-1), 0);
    support::expectRefusal(monitor("lo", {"--stream", "020000000003", "--levels", "0"})->wait(), 2,
                           "has 96000 Hz, and sound levels can be measured at 48000 Hz only");
}

} // namespace
