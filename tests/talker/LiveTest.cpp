#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "support/FrameCapture.h"
#include "support/NetworkNamespace.h"
#include "support/Program.h"
#include "talker/AafFrame.h"
#include "talker/Signal.h"

namespace {

using Arguments = std::vector<std::string>;
using Frame = support::FrameCapture::Frame;

/// One frame on the wire, in the order of sending.
struct Sent {
    unsigned index;
    unsigned channels = 2;
    std::size_t size = 0;                               ///< 0: complete
    std::optional<std::uint16_t> length = std::nullopt; ///< none: the true one
    std::string format = "int16";
    std::vector<std::pair<std::size_t, Frame>> changes = {}; ///< bytes that differ from those of a good frame
};

using Changes = std::vector<std::pair<std::size_t, Frame>>;

Sent changed(unsigned index, const char *format, const Changes &changes = {}) {
    return {index, 2, 0, {}, format, changes};
}

struct FaultCase {
    Arguments arguments;
    std::vector<Sent> sent;
    std::string faults;
};

/// The frame that must have been sent, with the timestamp of the received one.
Frame expectedFrame(const Sent &sent, const Frame &received) {
    const talker::Signal ramp = talker::Signal::parse("ramp", 48000);
    talker::AafFrame frame({2, 0, 0, 0, 0, 1}, {0x91, 0xe0, 0xf0, 0, 0xfe, 0x0a},
                           {sent.channels, 6, talker::FrameFormat::parseFormat(sent.format, "")});
    frame.setSequence(static_cast<std::uint8_t>(sent.index));
    for (unsigned sample = 0; sample < 6; ++sample) {
        for (unsigned channel = 0; channel < sent.channels; ++channel) {
            frame.setSample(sample, channel, ramp.value(sent.index * 6 + sample, channel));
        }
    }
    if (sent.length) {
        frame.setDataLength(*sent.length);
    }
    Frame bytes(frame.data(), frame.data() + (sent.size == 0 ? frame.size() : sent.size));
    for (const auto &[offset, changed] : sent.changes) {
        std::copy(changed.begin(), changed.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    for (std::size_t i = 26; i < 30 && i < std::min(bytes.size(), received.size()); ++i) {
        bytes[i] = received[i];
    }
    return bytes;
}

void expectOnTheWire(const FaultCase &run) {
    support::FrameCapture capture("lo");
    Arguments arguments = {"--device",          "lo",       "--source", "02:00:00:00:00:01", "--destination",
                           "91-E0-F0-00-FE-0a", "--signal", "ramp",     "--frames",          "6"};
    arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
    const support::Program::Result result = support::Program(SONVEX_TALKER, arguments).wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const std::string amount = std::to_string(run.sent.size());
    EXPECT_EQ(result.out.find("Sent " + amount + " frames, 36 samples per channel"), 0U) << result.out;
    EXPECT_NE(result.out.find("\nFaults: " + run.faults + ".\n"), std::string::npos) << result.out;

    const std::vector<Frame> received = capture.receive(run.sent.size());
    ASSERT_EQ(received.size(), run.sent.size());
    for (std::size_t i = 0; i < received.size(); ++i) {
        EXPECT_EQ(received[i], expectedFrame(run.sent[i], received[i])) << "frame " << i;
    }
}

TEST(Live, faultsReachTheWireAndNothingElseChanges) {
    const Frame nan = {0x7f, 0xc0, 0, 0, 0x7f, 0xc0, 0, 0}; // in two channels
    const Frame infinity = {0x7f, 0x80, 0, 0, 0x7f, 0x80, 0, 0};
    const std::vector<FaultCase> table = {
        {{}, {{0}, {1}, {2}, {3}, {4}, {5}}, "none"},
        {{"--drop", "0", "--drop", "3", "--drop", "2"}, {{1}, {4}, {5}}, "3 drop"},
        {{"--channels-at", "4:1", "--channels-at", "1:9"},
         {{0}, {1, 9}, {2, 9}, {3, 9}, {4, 1}, {5, 1}},
         "2 channels-at"},
        {{"--truncate", "1:15", "--truncate", "3:37", "--truncate", "4:61"},
         {{0}, {1, 2, 15}, {2}, {3, 2, 37}, {4, 2, 61}, {5}},
         "3 truncate"},
        {{"--drop", "1", "--channels-at", "1:3", "--repeat", "2", "--truncate", "2:70", "--length-at", "2:7", "--drop",
          "99"},
         {{0}, {2, 3, 70, 7}, {2, 3, 70, 7}, {3, 3}, {4, 3}, {5, 3}},
         "1 drop, 1 repeat, 1 channels-at, 1 truncate, 1 length-at"},
        {{"--uncertain", "0", "--untimed", "1", "--invalid", "2", "--restart-at", "3", "--drop", "3", "--rate-at",
          "2:96000", "--restart-at", "5"},
         {changed(0, "int16", {{17, {1}}}), changed(1, "int16", {{15, {0x80}}}),
          changed(2, "int16", {{15, {0x01}}, {31, {0x70}}}), changed(4, "int16", {{15, {0x89}}, {31, {0x70}}}),
          changed(5, "int16", {{31, {0x70}}})},
         "1 drop, 1 rate-at, 2 restart-at, 1 uncertain, 1 untimed, 1 invalid"},
        {{"--format", "int24", "--format-at", "1:float32", "--format-at", "4:int32", "--non-finite", "2", "--truncate",
          "3:70"},
         {changed(0, "int24"),
          changed(1, "float32"),
          changed(2, "float32", {{38, nan}, {78, infinity}}),
          {3, 2, 70, {}, "float32"},
          changed(4, "int32"),
          changed(5, "int32")},
         "2 format-at, 1 truncate, 1 non-finite"}};
    for (const FaultCase &run : table) {
        SCOPED_TRACE(run.faults);
        expectOnTheWire(run);
    }
}

std::uint32_t timestamp(const Frame &frame) {
    return std::uint32_t{frame[26]} << 24 | std::uint32_t{frame[27]} << 16 | std::uint32_t{frame[28]} << 8 | frame[29];
}

/// The number that follows a text in a summary.
double numberAfter(const std::string &summary, const std::string &text) {
    const std::size_t position = summary.find(text);
    return position == std::string::npos ? -1.0 : std::stod(summary.substr(position + text.size()));
}

TEST(Live, sequenceAndTimestampAdvanceWithEveryFrame) {
    struct Pace {
        Arguments arguments;
        std::uint32_t rate;
        std::uint32_t samples;
        std::uint32_t frames;
    };
    const std::vector<Pace> table = {
        {{"--samples-per-packet", "7", "--seconds", "0.044"}, 48000, 7, 302}, // 2112 samples
        {{"--rate", "44100", "--seconds", "0.03"}, 44100, 6, 221},
        {{"--rate", "8000", "--frames", "270"}, 8000, 1, 270},
        {{"--rate", "192000", "--frames", "270"}, 192000, 24, 270}};
    for (const Pace &pace : table) {
        SCOPED_TRACE(pace.rate);
        support::FrameCapture capture("lo");
        Arguments arguments = {"--device", "lo", "--source", "020000000001"};
        arguments.insert(arguments.end(), pace.arguments.begin(), pace.arguments.end());
        const support::Program::Result result = support::Program(SONVEX_TALKER, arguments).wait();
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        const double lastDue = (pace.frames - 1.0) * pace.samples / pace.rate;
        EXPECT_GE(numberAfter(result.out, "samples per channel, in "), lastDue - 0.001) << "too early";
        const std::vector<Frame> frames = capture.receive(pace.frames);
        ASSERT_EQ(frames.size(), pace.frames);
        for (std::uint32_t i = 0; i < pace.frames; ++i) {
            EXPECT_EQ(frames[i].size(), 38 + 4 * pace.samples);
            EXPECT_EQ(frames[i][16], i % 256);
            // The start of the time line lies anywhere within a nanosecond.
            EXPECT_NEAR(timestamp(frames[i]) - timestamp(frames[0]), i * 1e9 * pace.samples / pace.rate, 1.0) << i;
        }
    }
}

TEST(Live, signalsEndAnEndlessStreamWithASummary) {
    for (const int number : {SIGINT, SIGTERM}) {
        support::FrameCapture capture("lo");
        support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001"});
        ASSERT_EQ(capture.receive(1).size(), 1U);
        talker.signal(number);
        const support::Program::Result result = talker.wait();
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_GE(numberAfter(result.out, "Sent "), 1.0) << result.out;
    }
}

TEST(Live, catchesUpAfterAHiccupAndSaysHowLateItWas) {
    support::FrameCapture capture("lo");
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--seconds", "1.6"});
    ASSERT_EQ(capture.receive(1).size(), 1U);
    talker.signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(1)); // the hiccup itself
    talker.signal(SIGCONT);
    const support::Program::Result result = talker.wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(numberAfter(result.out, "Sent "), 12800.0) << result.out;
    EXPECT_GE(numberAfter(result.out, "latest frame was "), 900.0) << result.out;
    EXPECT_GE(numberAfter(result.out, "ms late, "), 7000.0) << result.out;
    const double seconds = numberAfter(result.out, "samples per channel, in ");
    EXPECT_GE(seconds, 1.599) << "too early";
    EXPECT_LT(seconds, 2.5) << "the second of the hiccup was not made up for";
}

TEST(Live, aLostAdapterEndsTheStreamWithStatusOne) {
    support::makeVethPair("talk0", "hear0");
    for (const bool removed : {false, true}) {
        support::setInterfaceUp("talk0", true);
        support::waitForLink("talk0");
        support::FrameCapture capture("hear0");
        support::Program talker(SONVEX_TALKER, {"--device", "talk0"});
        ASSERT_EQ(capture.receive(1).size(), 1U);
        removed ? support::removeInterface("talk0") : support::setInterfaceUp("talk0", false);
        const support::Program::Result result = talker.wait();
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_NE(result.err.find("talk0"), std::string::npos) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_GE(numberAfter(result.out, "Sent "), 1.0) << result.out;
    }
}

class LiveVeth : public testing::Test {
protected:
    void SetUp() override { support::makeVethPair("talk0", "hear0"); }
    void TearDown() override { support::removeInterface("talk0"); }
};

TEST_F(LiveVeth, streamsGoSideBySideWithTagsAndNumbersOfTheirOwn) {
    support::FrameCapture capture("hear0");
    const support::Program::Result result = support::Program(SONVEX_TALKER, {"--device",      "talk0",
                                                                             "--source",      "020000000001",
                                                                             "--frames",      "2",
                                                                             "--streams",     "3",
                                                                             "--stream-id",   "0a:0b:0c:0d:0e:0f:00:ff",
                                                                             "--vlan",        "2:5",
                                                                             "--signal",      "ramp",
                                                                             "--signal",      "silence",
                                                                             "--signal",      "square:0:0.5",
                                                                             "--signal",      "ramp",
                                                                             "--channels",    "2",
                                                                             "--drop",        "0",
                                                                             "--channels-at", "1:1"})
                                                .wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out.find("Sent 5 frames, 12 samples per channel"), 0U) << result.out;
    const std::vector<Frame> frames = capture.receive(5);
    ASSERT_EQ(frames.size(), 5U);
    const auto codes = [](unsigned first, unsigned second) {
        return Frame({static_cast<std::uint8_t>(first >> 8), static_cast<std::uint8_t>(first),
                      static_cast<std::uint8_t>(second >> 8), static_cast<std::uint8_t>(second)});
    };
    std::size_t next = 0;
    for (std::uint8_t sequence = 0; sequence < 2; ++sequence) {
        for (std::uint8_t stream = sequence == 0 ? 1 : 0; stream < 3; ++stream) {
            const Frame &frame = frames[next++];
            const unsigned ramp = sequence * 6;
            const Frame samples[] = {codes(ramp, ramp + 1), codes(16384, 3000 + ramp), codes(4000 + ramp, 5000 + ramp)};
            Frame begin = {0x91, 0xe0, 0xf0, 0, 0xfe, stream, 2, 0, 0, 0, 0, 1, 0x81, 0, 0xa0, 2, 0x22, 0xf0};
            Frame expected = {2, 0x81, sequence, 0, 10, 11, 12, 13, 14, 15};
            begin.insert(begin.end(), expected.begin(), expected.end());
            begin.push_back(stream == 0 ? 0 : 1);
            begin.push_back(static_cast<std::uint8_t>(stream - 1));
            EXPECT_EQ(Frame(frame.begin(), frame.begin() + 30), begin) << next;
            EXPECT_EQ(Frame(frame.begin() + 42, frame.begin() + 46), samples[stream]) << next;
            EXPECT_EQ(frame.size(), stream == 0 ? 54U : 66U);
        }
    }
}

TEST_F(LiveVeth, theAdaptersOwnAddressNamesTheStreamByDefault) {
    support::FrameCapture capture("hear0");
    ASSERT_EQ(support::Program("ip", {"link", "set", "talk0", "address", "02:0a:0b:0c:0d:0e"}).wait().exitStatus, 0);
    const support::Program::Result result =
        support::Program(SONVEX_TALKER, {"--device", "talk0", "--frames", "1"}).wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const std::vector<Frame> frames = capture.receive(1);
    ASSERT_EQ(frames.size(), 1U);
    const Frame destination(frames[0].begin(), frames[0].begin() + 6);
    const Frame source(frames[0].begin() + 6, frames[0].begin() + 12);
    EXPECT_EQ(destination, Frame({0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00}));
    EXPECT_EQ(source, Frame({0x02, 0x0a, 0x0b, 0x0c, 0x0d, 0x0e}));
    EXPECT_EQ(Frame(frames[0].begin() + 18, frames[0].begin() + 24), source) << "stream ID";
}

TEST_F(LiveVeth, aFrameFillsTheAdaptersLimitAndNoByteMore) {
    support::FrameCapture capture("hear0");
    const auto run = [](const Arguments &more) {
        Arguments arguments = {"--device", "talk0", "--frames", "1", "--samples-per-packet", "1", "--channels"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return support::Program(SONVEX_TALKER, arguments).wait();
    };
    for (const bool tagged : {false, true}) {
        const auto sent = run(tagged ? Arguments{"738", "--vlan", "0"} : Arguments{"738"});
        EXPECT_EQ(sent.exitStatus, 0) << sent.err;
        const std::vector<Frame> frames = capture.receive(1);
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(frames[0].size(), tagged ? 1518U : 1514U);
    }
    for (const Arguments &tooMuch :
         {Arguments{"739"}, Arguments{"739", "--vlan", "0"}, {"2", "--channels-at", "7:739"}}) {
        support::expectRefusal(run(tooMuch), 2, "1502");
    }
    support::expectRefusal(run({"370", "--format-at", "8:int32"}), 2, "1504");
}

} // namespace
