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
    WatchedChecker() : AvtpPacketChecker(mac, 8, nullptr) {
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

TEST(PacketChecker, readsNoFieldThatIsNotWholeAndLeavesTheSequenceAlone) {
    for (const auto &[length, change] : std::vector<std::pair<std::size_t, std::string>>{
             {12, "2>-1"}, {16, "2>-1"}, {20, "2>-1"}, {32, "2>-1"}, {33, "2>3"}, {35, "2>3"}}) {
        SCOPED_TRACE(length);
        WatchedChecker checker;
        EXPECT_TRUE(checker.isSequenceNrInOrder(view(frameOf(10))));
        EXPECT_FALSE(checker.isSequenceNrInOrder(view(frameOf(200, 3, length))));
        EXPECT_EQ(checker.changes, (std::vector<std::string>{"-1>2", change}));
        EXPECT_FALSE(length >= 33 && checker.checkDataLength(24)); // unknown, not the one of the frame before
        EXPECT_TRUE(checker.isSequenceNrInOrder(view(frameOf(11))));
        EXPECT_TRUE(checker.checkDataLength(24));
    }
}

TEST(PacketChecker, announcesEachChangeOfTheChannelAmountOnceAndAcceptsOneToTheMaximum) {
    WatchedChecker checker;
    EXPECT_EQ(checker.checkChannelAmount(8), 0);
    std::uint8_t sequence = 0;
    for (const unsigned channels : {2U, 2U, 0U, 1U, 8U, 9U, 255U}) {
        checker.isSequenceNrInOrder(view(frameOf(sequence++, channels)));
        EXPECT_EQ(checker.checkChannelAmount(8), channels >= 1 && channels <= 8 ? static_cast<int>(channels) : 0);
    }
    EXPECT_EQ(checker.changes, (std::vector<std::string>{"-1>2", "2>0", "0>1", "1>8", "8>9", "9>255"}));
}

TEST(PacketChecker, readsMacTextsPairByPairAsStrtolDoes) {
    using Address = std::vector<std::uint8_t>;
    for (const auto &[text, address] :
         std::vector<std::pair<std::string, Address>>{{"0A1b2C3d4E5f", {0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F}},
                                                      {"zz1g-1 70x+f", {0x00, 0x01, 0xFF, 0x07, 0x00, 0x0F}},
                                                      {"02:00:00:01 ", {0x02, 0x00, 0x00, 0x00, 0x00, 0x01}}}) {
        auto frame = frameOf(0);
        std::copy(address.begin(), address.end(), frame.begin() + 6);
        const avb::AvtpPacketChecker checker(text, 8, nullptr);
        EXPECT_TRUE(checker.isPacketConform(view(frame))) << text;
        ++frame[11];
        EXPECT_FALSE(checker.isPacketConform(view(frame))) << text;
    }
    for (const char *text : {"", "0a1b2c3d4e5", "0a1b2c3d4e5f0", "0a:1b:2c:3d:4e:5f"}) { // of another length
        EXPECT_FALSE(avb::AvtpPacketChecker(text, 8, nullptr).isPacketConform(view(frameOf(0)))) << text;
    }
}

TEST(PacketChecker, logsItsLifeInOrder) {
    const support::LogRecorder log;
    {
        avb::AvtpPacketChecker checker(mac, 8, nullptr);
        checker.checkChannelAmount(8);
        checker.isSequenceNrInOrder(view(frameOf(255)));
        checker.isSequenceNrInOrder(view(frameOf(1, 9)));
        checker.checkChannelAmount(8);
    }
    const avb::AvtpPacketChecker nameless("", 8, nullptr);
    const std::string name = " \"0a1b2c3d4e5f\" ";
    const std::string boundary = "avb::AvtpPacketBoundaryChecker::";
    const std::string checker = "avb::AvtpPacketChecker::";
    const std::string refusal = "W " + boundary + "checkChannelAmount" + name +
                                "The amount of AVTP packet channels is invalid or exceeded:  Maximum allowed channel "
                                "amount:  8 , AVTP packet amount:  ";
    const std::string change = "D " + boundary + "setAmountOfDeliveredAvtpPacketChannels" + name +
                               "The amount of the currently transferred AVTP packet channels  have been  changed. New "
                               "channel number:  ";
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{
                  "D " + boundary + "AvtpPacketBoundaryChecker" + name + "Initialized",
                  "D " + checker + "setSourceMacAddress" + name + "MAC address successfully set:  \"0a1b2c3d4e5f\"",
                  "D " + checker + "AvtpPacketChecker" + name + "Initialized", refusal + "-1",
                  change + "2 , before:  -1", change + "9 , before:  2",
                  "D " + checker + "isSequenceNrInOrder" + name +
                      "Sequence Order number out of range!   Expected:  0  Received:  1",
                  refusal + "9", "D " + checker + "~AvtpPacketChecker" + name + "CLEARED!",
                  "D " + boundary + "~AvtpPacketBoundaryChecker" + name + "CLEARED!",
                  "D " + boundary + "AvtpPacketBoundaryChecker \"\" Initialized",
                  "W " + checker +
                      "setSourceMacAddress \"000000000000\" The given source MAC address length is "
                      "invalid!  Method isPacketConform() will always return false!",
                  "D " + checker + "AvtpPacketChecker \"000000000000\" Initialized"}));
}

} // namespace
