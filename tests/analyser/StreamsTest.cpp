#include <algorithm>
#include <atomic>
#include <optional>
#include <thread>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <gtest/gtest.h>

#include "analyser/StreamJson.h"
#include "analyser/StreamTable.h"
#include "common/Text.h"
#include "support/NetworkNamespace.h"
#include "support/Program.h"
#include "support/Terminal.h"
#include "support/wireFrames.h"
#include "talker/RawSocket.h"

namespace {

using discovery::Findings;
using discovery::WireStream;

QJsonObject parsed(const std::string &text) {
    QJsonParseError error{};
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text;
    return document.object();
}

/// The member at the path, whose parts are separated by dots.
QJsonValue at(const QJsonValue &value, const QString &path) {
    QJsonValue member = value;
    for (const QString &name : path.split(QLatin1Char('.'))) {
        member = member[name];
    }
    return member;
}

std::string compact(const QJsonValue &value, const std::string &paths) {
    QJsonArray values;
    for (const QString &path : QString::fromStdString(paths).split(QLatin1Char(' '))) {
        values.append(at(value, path));
    }
    return QJsonDocument(values).toJson(QJsonDocument::Compact).toStdString();
}

support::Program listing(const std::string &device, const std::string &seconds) {
    return {ANALYSER_PROGRAM, {"streams", "--device", device, "--seconds", seconds, "--format", "json"}};
}

/// Sends the same frames again and again.
class Repeater {
public:
    Repeater(const std::string &adapter, std::vector<wire::Frame> frames)
        : thread([this, socket = talker::RawSocket(adapter), frames = std::move(frames)]() mutable {
              while (!ended) {
                  for (const wire::Frame &frame : frames) {
                      socket.send(frame.data(), frame.size());
                  }
                  QThread::msleep(20);
              }
          }) {}
    ~Repeater() {
        ended = true;
        thread.join();
    }
    Repeater(const Repeater &) = delete;
    Repeater &operator=(const Repeater &) = delete;

private:
    std::atomic<bool> ended{false};
    std::thread thread;
};

TEST(Streams, areListedOnBothEndsOfACable) {
    support::makeVethPair("cable0", "cable1");
    support::Terminal silence({120, 24}, ANALYSER_PROGRAM, {"streams", "--device", "cable1", "--seconds", "0.01"});
    EXPECT_EQ(silence.waitForChange(), 0);
    EXPECT_NE(silence.shown().find("0 streams, 0 AVTP frames"), std::string::npos) << silence.shown();
    EXPECT_NE(silence.shown().find("mirror port"), std::string::npos) << silence.shown();

    constexpr std::uint64_t source = 0x020000000002;
    wire::Audio tagged;
    tagged.id = 0x0200000000020001;
    tagged.format = 2;
    tagged.depth = 24;
    tagged.channels = 8;
    tagged.length = 192;
    const std::vector<wire::Frame> frames = {
        wire::ethernet(source, 0x22f0, tagged.payload(), {0x81006002}),
        wire::ethernet(source, 0x22f0, tagged.payload(), {0x81000002, 0x81000003}),
        wire::ethernet(source, 0x22ea, wire::reservations({wire::Talker{7, 8, 1, {0}, 8}.message()}), {0x81000000}),
        wire::ethernet(source, 0x0800, tagged.payload())};
    std::optional<Repeater> repeater(std::in_place, "cable0", frames);
    support::Program talker(SONVEX_TALKER, {"--device", "cable0", "--source", "020000000001"});
    support::Terminal terminal({120, 24}, ANALYSER_PROGRAM, {"streams", "--device", "cable1", "--seconds", "600"});
    EXPECT_TRUE(terminal.waitFor([&] { return terminal.shown().find(" of 600 s, 2 streams") != std::string::npos; }));
    auto received = listing("cable1", "2");
    auto sent = listing("cable0", "2");
    for (support::Program *program : {&received, &sent}) {
        const auto result = program->wait();
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(result.err, "");
        const QJsonObject document = parsed(result.out);
        const auto streams = document[QLatin1String("streams")].toArray();
        ASSERT_EQ(streams.size(), 2) << result.out;
        EXPECT_EQ(compact(streams[0], "id source destination vlan format rate channels samplesPerPacket obstacle"),
                  R"(["0200000000010000","020000000001","91e0f000fe00",null,"int16",48000,2,)"
                  R"({"greatest":6,"least":6},null])");
        EXPECT_NEAR(at(streams[0], QStringLiteral("framesPerSecond")).toDouble(), 8000, 4000);
        EXPECT_NEAR(at(streams[0], QStringLiteral("clock.timestampPpm")).toDouble(-1e6), 0, 1);
        EXPECT_EQ(compact(streams[1], "id vlan.id vlan.priority format bitDepth argument"),
                  R"(["0200000000020001",2,3,"int32",24,"0200000000020001,channels=8,samples=6,format=int32"])");
        EXPECT_GT(at(document, QStringLiteral("frames.severalTags")).toInt(), 0);
        EXPECT_EQ(compact(document[QLatin1String("offers")].toArray().at(0), "id failureCode failure isDelivered"),
                  R"(["0000000000000007",8,"the egress port is not AVB capable",false])");
    }
    terminal.type("\x03");
    EXPECT_EQ(terminal.waitForChange(), 0);
    const auto table = terminal.shown().rfind("\r\x1b[Kheard at cable1 in ");
    ASSERT_NE(table, std::string::npos) << terminal.shown();
    EXPECT_NE(terminal.shown().find("    --stream 0200000000010000,channels=2,samples=6,format=int16\r\n", table),
              std::string::npos);
    EXPECT_NE(terminal.shown().find("failed: the egress port is not AVB capable (code 8)\r\n", table),
              std::string::npos);
    repeater.reset();
    support::removeInterface("cable1");
}

TEST(Streams, endWithTheAdapter) {
    support::makeVethPair("brief0", "brief1");
    support::setInterfaceUp("brief1", false);
    support::expectRefusal(listing("brief1", "1").wait(), 1, "'sudo ip link set brief1 up' brings it up");
    support::setInterfaceUp("brief1", true);
    support::Terminal terminal({120, 24}, ANALYSER_PROGRAM, {"streams", "--device", "brief1", "--seconds", "600"});
    EXPECT_TRUE(
        terminal.waitFor([&] { return terminal.shown().find("listening on brief1: 0 of") != std::string::npos; }));
    support::removeInterface("brief1");
    EXPECT_EQ(WEXITSTATUS(terminal.waitForChange()), 1);
    EXPECT_NE(terminal.shown().find("the adapter 'brief1' fails: "), std::string::npos) << terminal.shown();
}

/// A stream about which there is as much to say as there can be.
WireStream troubled(std::uint8_t number) {
    WireStream stream;
    stream.id = common::StreamId{2, 0, 0, 0, 0, 1, static_cast<std::uint8_t>(number / 2), number};
    stream.tag = discovery::VlanTag{4094, 7};
    stream.format.kind = discovery::StreamFormat::Kind::aaf;
    stream.format.code = 1;
    stream.format.rate = 176400;
    stream.format.channels = 255;
    stream.format.bitDepth = 24;
    stream.samples = WireStream::Samples{10, 20};
    stream.arrivalDistance = WireStream::Distance{0.0001, 0.000125, 1.5};
    stream.framesPerSecond = 8000;
    stream.arrivalPpm = number == 0 ? 1e6 : -123;
    stream.timestampPpm = -123.44;
    stream.firstHeard = 4;
    stream.lastHeard = 7.25;
    stream.frames = number == 77 ? 1'000'000 : 1000U - number;
    for (auto count : {&WireStream::gaps, &WireStream::framesLost, &WireStream::framesOutOfOrder,
                       &WireStream::framesCutShort, &WireStream::timestampsUncertain, &WireStream::timestampLeaps,
                       &WireStream::clockRestarts, &WireStream::formatChanges, &WireStream::addressChanges}) {
        stream.*count = 123;
    }
    stream.argument = "0200000000010000,channels=255,samples=20,format=float32,rate=176400";
    return stream;
}

TEST(Streams, fitIntoAWindowAndAllIntoADocument) {
    Findings findings;
    findings.seconds = 10;
    findings.kernelDrops = 3;
    findings.frames.severalTags = 1;
    findings.streamsBeyond = 9;
    for (unsigned i = 0; i < 100; ++i) {
        findings.streams.push_back(troubled(static_cast<std::uint8_t>(i)));
        findings.offers.push_back({*findings.streams.back().id, {}, 2, 3, 1500, 12, 9, i == 0});
    }
    findings.streams[1].obstacle = "its packets hold what can't be read, and many words are needed to explain why that "
                                   "is so and what could be done";
    findings.streams.push_back({});
    const std::string table = analyser::streamTable(findings, "eth0");
    for (const std::string &line : text::split(table, '\n')) {
        EXPECT_LE(line.size(), 120U) << line;
    }
    EXPECT_LT(std::count(table.begin(), table.end(), '\n'), 400);
    for (const std::string part :
         {"heard at eth0 in 10.0 s: 110 streams", "this machine dropped 3 frames itself", "not read: 1 frame with",
          "0200000000010000  AAF float32/24  176.4 kHz  255    10-20    8000.0   123     -123.4  4094/7",
          "frames 0.100 to 1500.000 ms apart, mean 0.125 ms", "rate by arrivals -123 ppm", "brings 2.00 times",
          "123 gaps", "123 changes of the format", "began after 4.0 s", "silent for the last 2.8 s",
          "\n    --stream 0200000000010000,channels=255", "cannot be monitored: its packets", "02000000000126",
          "and 61 more streams with fewer", "and at least 9 more", "offered but not", "and 59 more offers"}) {
        EXPECT_NE(table.find(part), std::string::npos) << part << " is not in\n" << table.substr(0, 3000);
    }
    const QJsonObject document = parsed(analyser::streamJson(findings, "eth0"));
    const auto streams = document[QLatin1String("streams")].toArray();
    EXPECT_EQ(streams.size(), 101);
    EXPECT_EQ(document[QLatin1String("offers")].toArray().size(), 100);
    EXPECT_EQ(compact(streams[0], "arrivalDistance clock.restarts rate"),
              R"([{"greatest":1.5,"least":0.0001,"mean":0.000125},123,176400])");
    EXPECT_EQ(compact(streams[100], "id vlan rate channels format framesPerSecond clock.timestampPpm arrivalDistance"),
              "[null,null,null,null,null,null,null,null]");
}

} // namespace
