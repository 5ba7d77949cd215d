#include <algorithm>
#include <cmath>
#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <sstream>

#include <sys/stat.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "support/Program.h"
#include "support/waitFor.h"

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
    // A busy machine may lose frames of its own.
    EXPECT_GE(stream.value(QLatin1String("framesLost")).toInt(), 3) << result.out;
    EXPECT_GE(stream.value(QLatin1String("gaps")).toInt(), 2);
    EXPECT_EQ(stream.value(QLatin1String("framesRefused")).toObject().value(QLatin1String("dataLength")).toInt(), 2);
    EXPECT_NE(result.err.find("lack samples: its frames are refused"), std::string::npos) << result.err;
}

std::string contents(const std::string &name) {
    QFile file(QString::fromStdString(name));
    file.open(QIODevice::ReadOnly);
    return file.readAll().toStdString();
}

TEST(Monitor, tellsInPlainLinesHowEachAnalysisFares) {
    const QTemporaryDir folder;
    const std::string file = folder.filePath(QStringLiteral("lines")).toStdString();
    support::Program analyser(ANALYSER_PROGRAM, {"monitor", "--device", "lo", "--stream", "020000000001", "--waveform",
                                                 "0:480", "--spectrum", "0:12", "--output", file});
    const auto says = [&](const char *line) {
        const QRegularExpression pattern(QString::fromLatin1(line), QRegularExpression::MultilineOption);
        return support::waitFor([&] { return pattern.match(QString::fromStdString(contents(file))).hasMatch(); });
    };
    const auto talk = [](const char *seconds) {
        return support::Program(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--signal",
                                                "sine:1000:0.5", "--channels-at", "12000:1", "--seconds", seconds})
            .wait();
    };
    EXPECT_TRUE(says("^[2-9]\\.\\d s  waveform_020000000001_ch0  silent  0\\.0 results/s  peak 0\\.0000  messages 0$"));
    talk("3");
    EXPECT_TRUE(says("^message: INFORMATION ChannelAmountChanged 020000000001: 1 channels after 2, configured 2$"));
    EXPECT_TRUE(says("^\\d+\\.\\d s  spectrum_020000000001_ch0  running  ([5-9]\\d|1[0-4]\\d)\\.\\d results/s  "
                     "peak at 996\\.1 Hz, -9\\.0 dBFS  messages 2$"));
    EXPECT_TRUE(
        says("running  [^$]*^\\d+\\.\\d s  spectrum_020000000001_ch0  silent  0\\.0 results/s  peak at 996\\.1"));
    talk("2");
    EXPECT_TRUE(says("silent  [^$]*running  [^$]*silent"));
    analyser.signal(SIGINT);
    const auto result = analyser.wait();
    EXPECT_TRUE(says("^summary: \\d+\\.\\d{3} s, \\d messages, packets missed: \\d+, frames refused for the channel "
                     "amount: 0, for the data length: 0, as incomplete: 0, for the format: 0, for the sample rate: 0, "
                     "dropped by this machine: \\d+\n"
                     "waveform_020000000001_ch0: \\d{3} results\nspectrum_020000000001_ch0: \\d{3} results\n"));
    const QRegularExpression complaints(QStringLiteral(
        "no frame of this stream has arrived[^$]*results arrive from[^$]*no more frames arrive[^$]*results arrive"));
    EXPECT_TRUE(complaints.match(QString::fromStdString(result.err)).hasMatch()) << result.err;
}

/// What a file holds of the results: by the columns that one has for itself, the places and values.
using Results = std::map<QStringList, std::vector<std::pair<double, double>>>;

Results readJson(const std::string &text) {
    Results results;
    for (const QByteArray &line : QByteArray::fromStdString(text).split('\n')) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const auto x = values(object, "x");
        const auto y = values(object, "y");
        QStringList key;
        for (const char *part : {"type", "name", "stream", "channel", "sequence", "time", "endSample"}) {
            key += object.value(QLatin1String(part)).toVariant().toString();
        }
        key += object.value(QLatin1String("behindGap")).toBool() ? QStringLiteral("1") : QStringLiteral("0");
        for (int i = 0; i < y.size(); ++i) {
            results[key].emplace_back(x.isEmpty() ? i : x.at(i).toDouble(),
                                      y.at(i).isNull() ? -HUGE_VAL : y.at(i).toDouble());
        }
    }
    return results;
}

constexpr char columns[] = "type,name,stream,channel,sequence,index,value,time,endSample,behindGap";

Results readCsv(const std::string &text, std::string &comments) {
    Results results;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line[0] == '#' || line == columns) {
            comments += line + '\n';
            continue;
        }
        QStringList key = QString::fromStdString(line).split(QLatin1Char(','));
        const double index = key.takeAt(5).toDouble();
        const double value = key.takeAt(5).toDouble();
        results[key].emplace_back(index, value);
    }
    return results;
}

TEST(Monitor, writesTheSameAsCsvAndAsJson) {
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--signal", "sine:997:0.3",
                                            "--signal", "silence"});
    const QTemporaryDir folder;
    const std::string json = folder.filePath(QStringLiteral("json")).toStdString();
    const std::string csv = folder.filePath(QStringLiteral("csv")).toStdString();
    std::ofstream(csv) << "what was there before";
    const auto run =
        support::Program(ANALYSER_PROGRAM,
                         {"monitor",  "--device",    "lo",        "--stream", "020000000001", "--waveform", "0:48",
                          "--levels", "0",           "--levels",  "1",        "--spectrum",   "0:5",        "--buffer",
                          "6000",     "--reference", "94",        "--format", "json",         "--output",   json,
                          "--also",   "csv:" + csv,  "--seconds", "2"})
            .wait();
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    std::string comments;
    const Results expected = readJson(contents(json));
    EXPECT_GT(expected.size(), 200U);
    EXPECT_TRUE(readCsv(contents(csv), comments) == expected);
    for (const std::string &part : std::vector<std::string>{
             "# sonvex-analyser 1.6.0.3\n# device: lo\n# started: 20",
             "\n# stream: 020000000001, 2 channels, 6 samples ",
             "\n# analysis: spectrum, spectrum_020000000001_ch0, stream 020000000001, channel 0, amount 32 samples, "
             "order 5",
             "bin width 1500 Hz", ", clock external:480 samples, value in ", "\n# buffer: 6000 samples\n",
             "\n# reference: 0 dBFS is 94 dB SPL ", "\n# limits: spectra of 32 samples leave out 448 ",
             "levels 0 to 6 for dBA SPL fast, ", std::string(", dBFS\n") + columns + '\n',
             "\n# message: INFORMATION ChannelAmountChanged 020000000001: 2 channels after -1", "\n# summary: "}) {
        EXPECT_NE(comments.find(part), std::string::npos) << part << " is not in\n" << comments;
    }
    for (const auto &analysis : values(lastObject(contents(json)), "analyses")) {
        const QJsonObject object = analysis.toObject();
        EXPECT_NE(comments.find("\n# " + object.value(QLatin1String("name")).toString().toStdString() + ": " +
                                std::to_string(object.value(QLatin1String("results")).toInt()) + " results\n"),
                  std::string::npos);
    }
}

/// The sum of the numbers behind each place where the text stands.
std::size_t sumAfter(const std::string &all, const std::string &text) {
    std::size_t sum = 0;
    for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) {
        sum += std::stoul(all.substr(at + text.size(), 20));
    }
    return sum;
}

/// How many results a file of either format holds.
std::size_t resultsIn(const std::string &text) {
    std::size_t amount = 0;
    std::istringstream lines(text);
    std::string before;
    for (std::string line; std::getline(lines, line);) {
        std::size_t end = 0;
        for (int column = 0; column < 5 && end != std::string::npos; ++column) {
            end = line.find(',', end + 1);
        }
        line.resize(std::min(end, line.size())); // up to the sequence
        if (line[0] != '#' && line.substr(0, 5) != "type," && line != before) {
            amount += line[0] != '{' || line.find("sequence") != std::string::npos ? 1 : 0;
            before = line;
        }
    }
    return amount;
}

TEST(Monitor, letsAStalledReaderHarmNobodyAndWaitsForItOnDemand) {
    struct Case {
        std::string format;
        bool waits;
        bool reads; // in the end
    };
    for (const auto &[format, waits, reads] :
         {Case{"json", false, true}, {"csv", false, true}, {"json", true, true}, {"csv", true, false}}) {
        SCOPED_TRACE(format + (waits ? ", waited for" : ""));
        const QTemporaryDir folder;
        const std::string pipe = folder.filePath(QStringLiteral("pipe")).toStdString();
        const std::string file = folder.filePath(QStringLiteral("file")).toStdString();
        const std::string errors = folder.filePath(QStringLiteral("errors")).toStdString();
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::promise<void> goesOn;
        auto reader = std::async(std::launch::async, [&] {
            std::ifstream output(pipe); // opens together with the analyser
            goesOn.get_future().wait();
            std::ostringstream text;
            text << output.rdbuf();
            return text.str();
        });
        support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--signal", "silence"});
        const std::string command = ANALYSER_PROGRAM " monitor --device lo --stream 020000000001 --waveform 0:24000 "
                                                     "--levels 1 --clock external:2400 --format ";
        support::Program analyser("bash", {"-c", "exec " + command + format + " --output " + pipe + " --also json:" +
                                                     file + (waits ? " --wait" : "") + " 2> " + errors});
        constexpr qint64 more = 12'000'000; // than there is room for without waiting: 60 waveforms
        EXPECT_TRUE(support::waitFor([&] { return QFile(QString::fromStdString(file)).size() > more; }));
        const auto says = [&](const std::string &text) { return contents(errors).find(text) != std::string::npos; };
        if (!reads) {
            analyser.signal(SIGINT);
            EXPECT_EQ(analyser.wait().exitStatus, 1);
            EXPECT_TRUE(says("cannot write the output '" + pipe + "': its reader takes no more"));
            goesOn.set_value();
            continue;
        }
        goesOn.set_value();
        talker.signal(SIGINT);
        talker.wait();
        EXPECT_TRUE(!waits || support::waitFor([&] { return says("no more frames arrive"); }));
        analyser.signal(SIGINT);
        EXPECT_EQ(analyser.wait().exitStatus, 0) << contents(errors);

        const std::string taken = reader.get();
        const std::string all = contents(file);
        const std::size_t told = sumAfter(taken, "# left out: ") + sumAfter(taken, "\"leftOut\",\"results\":");
        EXPECT_EQ(resultsIn(all),
                  sumAfter(all, ",\"channel\":0,\"results\":") + sumAfter(all, ",\"channel\":1,\"results\":"));
        EXPECT_EQ(resultsIn(taken) + told, resultsIn(all));
        EXPECT_EQ(told == 0, waits);
        EXPECT_NE(says("' lacks " + std::to_string(told) + " results, since its reader was too slow"), waits);
    }
}

} // namespace
