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
};

struct FaultCase {
    Arguments arguments;
    std::vector<Sent> sent;
    std::string faults;
};

/// The frame that must have been sent, with the timestamp of the received one.
Frame expectedFrame(const Sent &sent, const Frame &received) {
    const talker::Signal ramp = talker::Signal::parse("ramp", 48000);
    talker::AafFrame frame({2, 0, 0, 0, 0, 1}, {0x91, 0xe0, 0xf0, 0, 0xfe, 0x0a}, sent.channels, 6);
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
    const std::vector<FaultCase> table = {{{}, {{0}, {1}, {2}, {3}, {4}, {5}}, "none"},
                                          {{"--drop", "0", "--drop", "3", "--drop", "2"}, {{1}, {4}, {5}}, "3 drop"},
                                          {{"--channels-at", "4:1", "--channels-at", "1:9"},
                                           {{0}, {1, 9}, {2, 9}, {3, 9}, {4, 1}, {5, 1}},
                                           "2 channels-at"},
                                          {{"--truncate", "1:15", "--truncate", "3:37", "--truncate", "4:61"},
                                           {{0}, {1, 2, 15}, {2}, {3, 2, 37}, {4, 2, 61}, {5}},
                                           "3 truncate"},
                                          {{"--drop", "1", "--channels-at", "1:3", "--repeat", "2", "--truncate",
                                            "2:70", "--length-at", "2:7", "--drop", "99"},
                                           {{0}, {2, 3, 70, 7}, {2, 3, 70, 7}, {3, 3}, {4, 3}, {5, 3}},
                                           "1 drop, 1 repeat, 1 channels-at, 1 truncate, 1 length-at"}};
    for (const FaultCase &run : table) {
        SCOPED_TRACE(run.faults);
        expectOnTheWire(run);
    }
}

std::uint32_t timestamp(const Frame &frame) {
    return std::uint32_t{frame[26]} << 24 | std::uint32_t{frame[27]} << 16 | std::uint32_t{frame[28]} << 8 | frame[29];
}

TEST(Live, sequenceAndTimestampAdvanceWithEveryFrame) {
    support::FrameCapture capture("lo");
    const support::Program::Result result =
        support::Program(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--samples-per-packet", "7",
                                         "--seconds", "0.044"})
            .wait();
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const std::vector<Frame> frames = capture.receive(302); // 0.044 s are 2112 samples
    ASSERT_EQ(frames.size(), 302U);
    for (std::uint32_t i = 0; i < 302; ++i) {
        EXPECT_EQ(frames[i][16], i % 256);
        // The start of the time line lies anywhere within a nanosecond.
        EXPECT_NEAR(timestamp(frames[i]) - timestamp(frames[0]), i * 7e9 / 48000, 1.0) << i;
    }
}

/// The number that follows a text in a summary.
double numberAfter(const std::string &summary, const std::string &text) {
    const std::size_t position = summary.find(text);
    return position == std::string::npos ? -1.0 : std::stod(summary.substr(position + text.size()));
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
    const auto run = [](const char *channels, const char *laterChannels) {
        return support::Program(SONVEX_TALKER, {"--device", "talk0", "--frames", "1", "--samples-per-packet", "1",
                                                "--channels", channels, "--channels-at", laterChannels})
            .wait();
    };
    EXPECT_EQ(run("738", "7:2").exitStatus, 0);
    const std::vector<Frame> frames = capture.receive(1);
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].size(), 1514U);
    for (const auto &refused : {run("739", "7:2"), run("2", "7:739")}) {
        EXPECT_EQ(refused.exitStatus, 2);
        EXPECT_NE(refused.err.find("1502"), std::string::npos) << refused.err;
    }
}

} // namespace
