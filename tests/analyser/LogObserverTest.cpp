#include "analyser/LogObserver.h"

#include <array>
#include <thread>

#include <unistd.h>

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace {

using analyser::LogObserver;

const char channelLine[] =
    "avb::AvtpPacketBoundaryChecker::checkChannelAmount \"020000000001\" The amount of AVTP packet channels is invalid "
    "or exceeded:  Maximum allowed channel amount:  2 , AVTP packet amount:  8";
const char lengthLine[] =
    "avb::AvtpPacketReceiver::performPreDataExtractionChecks \"AvtpPacketReceiver (eth1)\" The transferred AVTP stream "
    "data length is unexpected!  Packet audio data won't be extracted for device:  \"020000000001\"";
const char gapLine[] = "avb::AvtpPacketReceiver::extractAvtpPacketData \"AvtpPacketReceiver (eth1)\" Packets missed:  ";

void observe(LogObserver &observer, const std::string &line) {
    observer.observe(QtWarningMsg, QString::fromStdString(line));
}

TEST(LogObserver, countsWhatTheLibraryReportsInItsLog) {
    LogObserver observer;
    observe(observer, gapLine + std::string("1"));
    observe(observer, gapLine + std::string("41"));
    observe(observer, lengthLine);
    observe(observer, "a line that says Packets missed: 99 from elsewhere");
    observe(observer, "pcapplus::RunPcapEventLoop::run \"PcapPacketSniffer (eth1)\" PCAP listener active");
    EXPECT_EQ(observer.facts().capturesEnded, 0U);
    observe(observer, "pcapplus::RunPcapEventLoop::run \"PcapPacketSniffer (eth1)\" PCAP listener INACTIVE");
    observe(observer,
            "pcapplus::PcapPacketSniffer::configure \"PcapPacketSniffer (eth1)\" \"Unable to open the adapter "
            "number 1. Error message: lo: You don't have permission (socket)\"");

    const auto facts = observer.facts();
    EXPECT_EQ(facts.packetsMissed, 41U);
    EXPECT_EQ(facts.refused.at("020000000001").dataLength, 1U);
    EXPECT_EQ(facts.refused.at("020000000001").channelAmount, 0U);
    EXPECT_EQ(facts.capturesEnded, 1U);
    EXPECT_EQ(facts.openError, "lo: You don't have permission (socket)");
}

TEST(LogObserver, countsAFrameOfWrongChannelsOnceAlsoAmongOtherThreads) {
    LogObserver observer;
    observe(observer, channelLine);
    std::thread([&] { observe(observer, lengthLine); }).join(); // another frame
    observe(observer, channelLine);
    observe(observer, lengthLine); // the same frame again
    observe(observer, lengthLine);
    EXPECT_EQ(observer.facts().refused.at("020000000001").channelAmount, 2U);
    EXPECT_EQ(observer.facts().refused.at("020000000001").dataLength, 2U);
}

TEST(LineWriter, leavesOutAndCountsWhatAStalledReaderDoesNotTake) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const common::FileDescriptor reader(ends[0]);
    analyser::LineWriter writer{common::FileDescriptor(ends[1])};
    constexpr std::size_t amount = 30'000; // more than a pipe holds
    for (std::size_t i = 0; i < amount; ++i) {
        writer.write("line\n");
    }
    std::string taken(amount * 5, ' ');
    taken.resize(static_cast<std::size_t>(::read(ends[0], taken.data(), taken.size())));
    writer.write("last\n");
    std::string rest(100, ' ');
    rest.resize(static_cast<std::size_t>(::read(ends[0], rest.data(), rest.size())));
    EXPECT_EQ(rest, std::to_string(amount - taken.size() / 5) + " lines left out\nlast\n");
}

TEST(LogObserver, writesEveryLineToTheFileThoseBeforeItWasNamedToo) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    LogObserver observer;
    observe(observer, "early");
    observer.configure({false, file.fileName().toStdString()});
    std::thread([&] { observe(observer, "late"); }).join();

    const auto lines = file.readAll().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith("Z WARNING early")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("Z WARNING late")) << lines[1].toStdString();
    EXPECT_EQ(observer.failure(), "");
}

} // namespace
