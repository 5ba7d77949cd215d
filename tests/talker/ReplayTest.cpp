#include <chrono>
#include <csignal>
#include <fstream>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "support/CaptureWriter.h"
#include "support/FrameCapture.h"
#include "support/NetworkNamespace.h"
#include "support/Program.h"
#include "support/waitFor.h"
#include "talker/ReplayTimeline.h"

namespace {

using namespace std::chrono_literals;
using Frame = support::FrameCapture::Frame;

/// An AVTP frame that is told apart by a byte.
Frame frame(std::uint8_t content, std::size_t size = 60) {
    Frame bytes(size, content);
    bytes[12] = 0x22;
    bytes[13] = 0xf0;
    return bytes;
}

Frame tagged(std::uint8_t content, std::size_t size) {
    Frame bytes = frame(content, size - 4);
    const auto tag = {0x81, 0x00, 0x60, 0x02};
    bytes.insert(bytes.begin() + 12, tag.begin(), tag.end());
    return bytes;
}

class Replay : public testing::Test {
protected:
    void SetUp() override { support::makeVethPair("talk0", "hear0"); }
    void TearDown() override { support::removeInterface("talk0"); }

    std::string file(const char *name) const { return folder.filePath(QString::fromLatin1(name)).toStdString(); }

    static support::Program::Result replay(const std::string &path, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"--device", "talk0", "--replay", path});
        return support::Program(SONVEX_TALKER, more).wait();
    }

    QTemporaryDir folder;
};

TEST_F(Replay, sendsWhatTheAdapterTakesAsItIsAndAtItsTimes) {
    constexpr auto start = 1'700'000'000s; // captures begin at any time
    {
        support::CaptureWriter writer(file("a.pcap"));
        writer.add(Frame(13, 7), start - 5s);
        writer.add(frame(1, 14), start);
        writer.add(frame(2, 1514), start + 1ms);
        writer.add(frame(3, 1515), start + 2ms);
        writer.add(tagged(4, 1518), start + 3ms);
        writer.add(tagged(5, 1519), start + 3ms);
        writer.add(frame(6), start + 3ms, 1);
        writer.add(frame(7), start - 90ms);
        writer.add(frame(8), start + 300ms);
        writer.add(frame(9), start - 3600s);
        writer.add(frame(10), start - 3600s + 100ms);
    }
    ASSERT_EQ(support::Program("tshark", {"-r", file("a.pcap"), "-w", file("a.pcapng")}).wait().exitStatus, 0);
    const std::vector<Frame> expected = {frame(1, 14), frame(2, 1514), tagged(4, 1518), frame(7),
                                         frame(8),     frame(9),       frame(10)};
    for (const char *name : {"a.pcap", "a.pcapng"}) {
        support::FrameCapture capture("hear0");
        const support::Program::Result result = replay(file(name));
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        const std::string sent = "Sent 7 frames in ";
        ASSERT_EQ(result.out.find(sent), 0U) << result.out;
        EXPECT_GE(std::stod(result.out.substr(sent.size())), 0.4) << "too early";
        for (const char *told : {"1 that the capture had cut, 2 longer than", ", 1 shorter than", "jumped 1 times"}) {
            EXPECT_NE(result.out.find(told), std::string::npos) << result.out;
        }
        EXPECT_EQ(capture.receive(7), expected) << name;
    }
    EXPECT_EQ(replay(file("a.pcap"), {"--frames", "3"}).out.find("Sent 3 frames"), 0U);
    EXPECT_EQ(replay(file("a.pcap"), {"--seconds", "0.3"}).out.find("Sent 4 frames"), 0U);
}

TEST_F(Replay, aSignalEndsAPauseAndABrokenFileEndsWithStatusOne) {
    {
        support::CaptureWriter writer(file("pause.pcap"));
        writer.add(frame(1), 5s);
        writer.add(frame(2), 15s);
    }
    for (const int number : {SIGINT, SIGTERM}) {
        support::FrameCapture capture("hear0");
        support::Program talker(SONVEX_TALKER, {"--device", "talk0", "--replay", file("pause.pcap")});
        ASSERT_EQ(capture.receive(1).size(), 1U);
        ASSERT_TRUE(support::waitFor([&talker] { return talker.isAsleep(); }));
        talker.signal(number);
        const support::Program::Result result = talker.wait(8000);
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(result.out.find("Sent 1 frame in "), 0U) << result.out;
    }
    std::ifstream whole(file("pause.pcap"), std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(whole), {});
    std::ofstream(file("broken.pcap"), std::ios::binary) << bytes.substr(0, bytes.size() - 1);
    const support::Program::Result result = replay(file("broken.pcap"));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.err.find("broken.pcap': truncated"), std::string::npos) << result.err;
    EXPECT_EQ(result.out.find("Sent 1 frame in "), 0U) << result.out;
}

TEST_F(Replay, refusesFilesAndOptionsThatItCannotFollow) {
    { support::CaptureWriter writer(file("empty.pcap")); }
    support::CaptureWriter(file("raw.pcap"), DLT_RAW).add(frame(1));
    for (const auto &[name, reason] : {std::pair("empty.pcap", "holds no frames"),
                                       {"raw.pcap", "type Raw IP, Ethernet"},
                                       {"missing.pcap", "No such file"},
                                       {".", "capture file"}}) {
        support::expectRefusal(replay(file(name)), 2, reason);
    }
    for (const char *other : {"--channels", "--vlan", "--drop", "--signal"}) {
        support::expectRefusal(replay(file("raw.pcap"), {other, "1"}), 2, std::string(other) + " exclude each other");
    }
    support::expectRefusal(replay(file("raw.pcap"), {"--seconds", "1", "--frames", "1"}), 2, "exclude each other");
}

TEST(ReplayTimeline, neverGoesBackAndHasNoLongPauses) {
    constexpr std::chrono::nanoseconds late = 9'000'000'000s; // the last second that a file can say
    talker::ReplayTimeline timeline;
    struct Step {
        std::chrono::nanoseconds time;
        std::chrono::nanoseconds moment;
    };
    for (const Step &step : {Step{late, 0s},
                             {late + 125us, 125us}, //
                             {late + 100us, 125us}, // mixed up by a capture
                             {late + 250us, 250us}, // which moves nothing
                             {late + 9s, 9s},       //
                             {0s, 9s},              // the clock was set
                             {1s, 10s},             //
                             {20s, 20s},            // a long pause
                             {late, 30s},           //
                             {late + 10s, 40s}}) {
        EXPECT_EQ(timeline.next(step.time).count(), step.moment.count()) << step.time.count();
    }
    EXPECT_EQ(timeline.getJumps(), 3U);
}

} // namespace
