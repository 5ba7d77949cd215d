#include <algorithm>
#include <csignal>
#include <fstream>

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "support/Program.h"

// Both programs side by side, on a loopback adapter of their own.
namespace {

QJsonArray values(const QJsonObject &object, const char *key) {
    return object.value(QLatin1String(key)).toArray();
}

TEST(Monitor, showsAllKindsOfAnalysesOfATone) {
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "02:00:00:00:00:01", "--signal",
                                            "sine:1000:1.0", "--signal", "silence"});
    const auto result =
        support::Program(ANALYSER_PROGRAM, {"monitor", "--device", "lo", "--stream", "020000000001", "--waveform",
                                            "0:480", "--spectrum", "0:12", "--spectrum", "1:10:average=ms:100",
                                            "--levels", "0", "--levels", "1", "--format", "json", "--seconds", "3"})
            .wait();
    talker.signal(15);
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    std::map<std::string, QJsonObject> last;
    std::map<std::string, int> amounts;
    for (const QByteArray &line : QByteArray::fromStdString(result.out).split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const auto key = object.value(QLatin1String("type")).toString().toStdString() +
                         std::to_string(object.value(QLatin1String("channel")).toInt());
        last[key] = object;
        ++amounts[key];
    }
    EXPECT_EQ(values(last["settings0"], "analyses").size(), 5);
    EXPECT_EQ(values(last["waveform0"], "y").size(), 480);
    EXPECT_GT(amounts["waveform0"], 200);
    EXPECT_GT(amounts["spectrum0"], 200);
    EXPECT_GT(amounts["spectrum1"], 200);
    EXPECT_NEAR(amounts["waveform0"], 6 * amounts["levels0"], 13);

    const QJsonArray powers = values(last["spectrum0"], "y");
    ASSERT_EQ(powers.size(), 2048);
    const auto peak = std::max_element(powers.begin(), powers.end(),
                                       [](const auto &a, const auto &b) { return a.toDouble() < b.toDouble(); });
    EXPECT_EQ(peak - powers.begin(), 85); // 1000 Hz / 11.7 Hz
    EXPECT_EQ(last["spectrum0"].value(QLatin1String("order")).toInt(), 12);
    EXPECT_EQ(last["spectrum0"].value(QLatin1String("binWidth")).toDouble(), 48000.0 / 4096);
    EXPECT_EQ(values(last["spectrum1"], "y").size(), 512);

    const QJsonArray levels = values(last["levels0"], "y");
    ASSERT_EQ(levels.size(), 7);
    for (const int fast : {0, 2, 4, 6}) {
        EXPECT_NEAR(levels.at(fast).toDouble(), -3.01, fast == 2 ? 0.03 : 0.01);
    }
    for (const auto &level : values(last["levels1"], "y")) {
        EXPECT_TRUE(level.isNull());
    }
    const QJsonArray names = values(last["levels1"], "names");
    EXPECT_EQ(names.size(), 7);
    EXPECT_EQ(names.at(3).toString(), QStringLiteral("dBC SPL slow"));
    EXPECT_EQ(names.at(6).toString(), QStringLiteral("dBFS"));
    EXPECT_FALSE(last["levels1"].contains(QLatin1String("x")));
}

QJsonObject lastObject(const std::string &text) {
    const auto lines = QByteArray::fromStdString(text).split('\n');
    return QJsonDocument::fromJson(lines.size() < 2 ? QByteArray() : lines.at(lines.size() - 2)).object();
}

TEST(Monitor, knowsWhatIsLostAndRefusedWithAllLoggingOff) {
    qputenv("QT_LOGGING_RULES", "*=false");
    support::Program analyser(ANALYSER_PROGRAM, {"monitor", "--device", "lo", "--stream", "020000000001", "--levels",
                                                 "0", "--format", "json", "--seconds", "4"});
    const auto talk = support::Program(SONVEX_TALKER, {"--device", "lo", "--source", "02:00:00:00:00:01", "--seconds",
                                                       "5", "--drop", "10000", "--drop", "10001", "--drop", "12000",
                                                       "--length-at", "11000:20", "--length-at", "11500:22"})
                          .wait();
    qunsetenv("QT_LOGGING_RULES");
    const auto result = analyser.wait();
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const QJsonObject stream = values(lastObject(result.out), "streams").at(0).toObject();
    EXPECT_EQ(stream.value(QLatin1String("framesLost")).toInt(), 3) << result.out;
    EXPECT_EQ(stream.value(QLatin1String("gaps")).toInt(), 2);
    EXPECT_EQ(stream.value(QLatin1String("framesRefused")).toObject().value(QLatin1String("dataLength")).toInt(), 2);
    EXPECT_NE(result.err.find("lack samples: its frames are refused"), std::string::npos) << result.err;
}

TEST(Monitor, letsAStalledReaderHarmNobody) {
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "02:00:00:00:00:01"});
    const QTemporaryDir folder;
    const std::string file = folder.filePath(QStringLiteral("levels.csv")).toStdString();
    support::Program analyser(ANALYSER_PROGRAM,
                              {"monitor", "--device", "lo", "--stream", "020000000001", "--waveform", "0:24000",
                               "--levels", "1", "--format", "json", "--also", "csv:" + file, "--seconds", "60"});
    // Nothing of the first output is read meanwhile, and more comes than there is room for.
    const QDeadlineTimer deadline(60000);
    std::size_t levels = 0;
    while (levels < 100 && !deadline.hasExpired()) {
        QThread::msleep(20);
        levels = 0;
        std::ifstream csv(file);
        for (std::string line; std::getline(csv, line);) {
            levels += line.compare(0, 7, "levels,") == 0 ? 1 : 0;
        }
        levels /= 7;
    }
    EXPECT_GE(levels, 100U);
    analyser.signal(SIGINT);
    const auto result = analyser.wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("{\"type\":\"leftOut\",\"results\":"), std::string::npos);
    EXPECT_NE(result.err.find("the output lacks "), std::string::npos) << result.err;
    EXPECT_EQ(lastObject(result.out).value(QLatin1String("type")).toString(), QStringLiteral("summary"));
}

} // namespace
