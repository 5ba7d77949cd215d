#include <gtest/gtest.h>

#include "avb/AvtpPacketChecker.h"
#include "core/messages/ChannelAmountChanged.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"

namespace {

constexpr char mac[] = "0a1b2c3d4e5f";

avb::AvtpFrame view(const std::vector<std::uint8_t> &bytes) {
    const auto length = static_cast<std::uint32_t>(bytes.size());
    return {bytes.data(), length, length};
}

std::vector<std::uint8_t> frameOf(std::uint8_t sequence, unsigned channels = 2, std::size_t length = 62) {
    auto frame = support::makeFrame(mac, sequence, channels, 6, [](unsigned, unsigned) { return std::int16_t{1}; });
    frame.resize(length);
    return frame;
}

/// A checker whose messages are kept as "before>after".
struct WatchedChecker : avb::AvtpPacketChecker {
    explicit WatchedChecker(const std::string &address = mac) : AvtpPacketChecker(address, 8, nullptr) {
        connect(this, &AvtpPacketChecker::message, [this](const std::shared_ptr<sonvex::BaseMessage> &message) {
            const auto &change = dynamic_cast<sonvex::ChannelAmountChanged &>(*message);
            EXPECT_EQ(change.getMessageId(), mac);
            EXPECT_EQ(change.getMessageType(), "INFORMATION");
            EXPECT_EQ(change.getConfiguredChannelAmount(), 8U);
            EXPECT_NE(change.toString().find("Message sender: AvtpPacketBoundaryChecker"), std::string::npos);
            changes.push_back(std::to_string(change.getChannelAmountBefore()) + ">" +
                              std::to_string(change.getChannelAmountAfter()));
        });
    }
    std::vector<std::string> changes;
};

struct SequenceCase {
    const char *name;
    std::vector<int> numbers;
    std::vector<bool> inOrder;
};

class Sequences : public testing::TestWithParam<SequenceCase> {};

TEST_P(Sequences, followTheStream) {
    WatchedChecker checker;
    for (std::size_t i = 0; i < GetParam().numbers.size(); ++i) {
        EXPECT_EQ(checker.isSequenceNrInOrder(view(frameOf(static_cast<std::uint8_t>(GetParam().numbers[i])))),
                  GetParam().inOrder[i])
            << "frame " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(OneGapCostsOneFrame, Sequences,
                         testing::Values(SequenceCase{"wrap", {254, 255, 0, 1}, {true, true, true, true}},
                                         SequenceCase{"gapAtTheWrap", {255, 1, 2}, {true, false, true}},
                                         SequenceCase{"gap", {5, 7, 8}, {true, false, true}},
                                         SequenceCase{"repeated", {5, 5, 6}, {true, false, true}},
                                         SequenceCase{"backwards", {0, 255, 0}, {true, false, true}}),
                         [](const auto &instance) { return std::string(instance.param.name); });

TEST(PacketChecker, namesTheExpectedAndTheReceivedNumber) {
    WatchedChecker checker;
    checker.isSequenceNrInOrder(view(frameOf(255)));
    const support::LogRecorder log;
    checker.isSequenceNrInOrder(view(frameOf(1)));
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"D avb::AvtpPacketChecker::isSequenceNrInOrder \"0a1b2c3d4e5f\" Sequence Order "
                                       "number out of range!   Expected:  0  Received:  1"});
}

struct ShortFrameCase {
    std::size_t length;
    const char *change; ///< announced amount of channels
};

class ShortFrames : public testing::TestWithParam<ShortFrameCase> {};

TEST_P(ShortFrames, areRefusedAndLeaveTheSequenceAlone) {
    WatchedChecker checker;
    EXPECT_TRUE(checker.isSequenceNrInOrder(view(frameOf(10))));
    checker.changes.clear();
    EXPECT_FALSE(checker.isSequenceNrInOrder(view(frameOf(200, 3, GetParam().length))));
    EXPECT_EQ(checker.changes, std::vector<std::string>{GetParam().change});
    EXPECT_FALSE(GetParam().length >= 33 && checker.checkDataLength(24)); // unknown, not the one of the frame before
    EXPECT_TRUE(checker.isSequenceNrInOrder(view(frameOf(11))));
    EXPECT_TRUE(checker.checkDataLength(24));
}

INSTANTIATE_TEST_SUITE_P(BothSidesOfEachLimit, ShortFrames,
                         testing::Values(ShortFrameCase{12, "2>-1"}, ShortFrameCase{16, "2>-1"},
                                         ShortFrameCase{20, "2>-1"}, ShortFrameCase{32, "2>-1"},
                                         ShortFrameCase{33, "2>3"}, ShortFrameCase{35, "2>3"}));

TEST(PacketChecker, testsTheSecondFrameAgainstAShortFirstOne) {
    for (const auto &[length, next] : std::vector<std::pair<std::size_t, std::uint8_t>>{{16, 1}, {17, 43}, {35, 43}}) {
        WatchedChecker checker;
        EXPECT_FALSE(checker.isSequenceNrInOrder(view(frameOf(42, 2, length))));
        EXPECT_TRUE(checker.isSequenceNrInOrder(view(frameOf(next)))) << length;
    }
}

TEST(PacketChecker, announcesEachChangeOfTheChannelAmountOnce) {
    const support::LogRecorder log;
    WatchedChecker checker;
    for (const auto &[sequence, channels] :
         std::vector<std::pair<std::uint8_t, unsigned>>{{0, 2}, {1, 2}, {2, 4}, {9, 0}}) {
        checker.isSequenceNrInOrder(view(frameOf(sequence, channels)));
    }
    EXPECT_EQ(checker.changes, (std::vector<std::string>{"-1>2", "2>4", "4>0"}));
    EXPECT_EQ(log.count("D avb::AvtpPacketBoundaryChecker::setAmountOfDeliveredAvtpPacketChannels \"0a1b2c3d4e5f\" The "
                        "amount of the currently transferred AVTP packet channels  have been  changed. New channel "
                        "number:  4 , before:  2"),
              1);
}

TEST(PacketChecker, acceptsOneToTheMaximumOfChannels) {
    WatchedChecker checker;
    const support::LogRecorder log;
    EXPECT_EQ(checker.checkChannelAmount(8), 0);
    for (const unsigned channels : {0U, 1U, 8U, 9U, 255U}) {
        checker.isSequenceNrInOrder(view(frameOf(0, channels)));
        EXPECT_EQ(checker.checkChannelAmount(8), channels >= 1 && channels <= 8 ? static_cast<int>(channels) : 0);
    }
    const std::string refusal = "W avb::AvtpPacketBoundaryChecker::checkChannelAmount \"0a1b2c3d4e5f\" The amount of "
                                "AVTP packet channels is invalid or exceeded:  Maximum allowed channel amount:  8 , "
                                "AVTP packet amount:  ";
    EXPECT_EQ(log.warnings(),
              (std::vector<std::string>{refusal + "-1", refusal + "0", refusal + "9", refusal + "255"}));
}

struct MacCase {
    const char *text;
    std::vector<int> address;
};

class MacTexts : public testing::TestWithParam<MacCase> {};

TEST_P(MacTexts, areReadPairByPair) {
    auto frame = frameOf(0);
    std::copy(GetParam().address.begin(), GetParam().address.end(), frame.begin() + 6);
    const avb::AvtpPacketChecker checker(GetParam().text, 8, nullptr);
    EXPECT_TRUE(checker.isPacketConform(view(frame)));
    ++frame[11];
    EXPECT_FALSE(checker.isPacketConform(view(frame)));
    --frame[11];
    frame.resize(11);
    EXPECT_FALSE(checker.isPacketConform(view(frame)));
}

INSTANTIATE_TEST_SUITE_P(AsStrtolDoes, MacTexts,
                         testing::Values(MacCase{"0a1b2c3d4e5f", {0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F}},
                                         MacCase{"0A1B2C3D4E5F", {0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F}},
                                         MacCase{"zz1g-1 70x+f", {0x00, 0x01, 0xFF, 0x07, 0x00, 0x0F}},
                                         MacCase{"02:00:00:01 ", {0x02, 0x00, 0x00, 0x00, 0x00, 0x01}}));

TEST(PacketChecker, keepsTheZeroAddressForATextOfAnotherLength) {
    for (const char *text : {"", "0a1b2c3d4e5", "0a1b2c3d4e5f0", "0a:1b:2c:3d:4e:5f"}) {
        const support::LogRecorder log;
        const avb::AvtpPacketChecker checker(text, 8, nullptr);
        EXPECT_EQ(log.warnings(),
                  std::vector<std::string>{"W avb::AvtpPacketChecker::setSourceMacAddress \"000000000000\" The given "
                                           "source MAC address length is invalid!  Method isPacketConform() will "
                                           "always return false!"});
        EXPECT_FALSE(checker.isPacketConform(view(frameOf(0))));
    }
    EXPECT_FALSE(avb::AvtpPacketChecker(mac, 8, nullptr).isPacketConform(avb::AvtpFrame(nullptr, 62, 62)));
}

TEST(PacketChecker, logsItsLifeInOrder) {
    const support::LogRecorder log;
    { const avb::AvtpPacketChecker checker(mac, 8, nullptr); }
    const std::string name = " \"0a1b2c3d4e5f\" ";
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "D avb::AvtpPacketBoundaryChecker::AvtpPacketBoundaryChecker" + name + "Initialized",
                               "D avb::AvtpPacketChecker::setSourceMacAddress" + name +
                                   "MAC address successfully set:  \"0a1b2c3d4e5f\"",
                               "D avb::AvtpPacketChecker::AvtpPacketChecker" + name + "Initialized",
                               "D avb::AvtpPacketChecker::~AvtpPacketChecker" + name + "CLEARED!",
                               "D avb::AvtpPacketBoundaryChecker::~AvtpPacketBoundaryChecker" + name + "CLEARED!"}));
}

} // namespace
