#include <array>
#include <iomanip>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "common/Text.h"
#include "support/Dissector.h"
#include "talker/AafFrame.h"

namespace {

TEST(Dissector, readsEveryFieldOfTheFramesAndHasNoComplaint) {
    std::vector<std::vector<std::uint8_t>> frames;
    std::ostringstream expected;
    unsigned number = 254;
    for (const auto &[format, formatCode, bits] :
         {std::tuple("int16", 4, 16U), {"int24", 3, 24U}, {"int32", 2, 32U}, {"float32", 1, 32U}}) {
        for (const auto &[tag, tagText] :
             {std::pair("", " "), {"0:0", "0 0"}, {"2", "2 3"}, {"2047:2", "2047 2"}, {"4094:7", "4094 7"}}) {
            unsigned rateCode = 0;
            for (const std::string &hertz :
                 text::split("8000 16000 32000 44100 48000 88200 96000 176400 192000 24000", ' ')) {
                ++rateCode;
                const unsigned channels = std::array{1U, 2U, 255U, 256U, 1023U}[number / 7 % 5];
                const unsigned samples = 1 + number % 8;
                const unsigned id = number * 7919;
                talker::AafFrame frame({2, 0, 0, 0, 0, 0x7f}, {0x91, 0xe0, 0xf0, 0, 0xfe, 0},
                                       {channels, samples, talker::FrameFormat::parseFormat(format, ""),
                                        talker::FrameFormat::parseRate(hertz, "")});
                frame.setSequence(static_cast<std::uint8_t>(number));
                frame.setTimestamp(4294967295U - number);
                frame.setStreamId(
                    {0xff, 1, 2, 3, 4, 5, static_cast<std::uint8_t>(id >> 8), static_cast<std::uint8_t>(id)});
                const unsigned bitSet = number / 3 % 16;
                frame.setStreamValid((bitSet & 1) != 0);
                frame.setTimestampValid((bitSet & 2) != 0);
                frame.setTimestampUncertain((bitSet & 4) != 0);
                if ((bitSet & 8) != 0) {
                    frame.toggleClockRestart();
                }
                if (*tag != 0) {
                    frame.setTag(talker::VlanTag::parse(tag, ""));
                }
                frame.setSample(samples - 1, channels - 1, -0.5);
                frames.emplace_back(frame.data(), frame.data() + frame.size());
                // Tag, address, subtype, stream ID valid, version, timestamp valid, restart, uncertain, sequence,
                // stream ID, timestamp, format, rate, channels, bit depth, data length, no sparse timestamps, no
                // events, the last sample.
                expected << tagText << " 02:00:00:00:00:7f 0x02 " << (bitSet & 1) << " 0x00 " << (bitSet >> 1 & 1)
                         << ' ' << (bitSet >> 3 & 1) << ' ' << (bitSet >> 2 & 1) << ' ' << number % 256
                         << " 0xff0102030405" << std::hex << std::setfill('0') << std::setw(4) << id % 65536 << std::dec
                         << ' ' << 4294967295U - number << " 0x0" << formatCode << " 0x" << std::hex << std::setw(4)
                         << rateCode << std::dec << ' ' << channels << ' ' << bits << ' '
                         << bits / 8 * channels * samples << " 0 0x00 "
                         << std::string(*format == 'f' ? "bf000000" : "c0000000").substr(0, bits / 4) << '\n';
                ++number;
            }
        }
    }
    const support::Dissector dissector(frames);
    EXPECT_EQ(dissector.fields({"vlan.id",
                                "vlan.priority",
                                "eth.src",
                                "ieee1722.subtype",
                                "ieee1722.svfield",
                                "ieee1722.verfield",
                                "aaf.tvfield",
                                "aaf.mrfield",
                                "aaf.tufield",
                                "aaf.seqnum",
                                "aaf.stream_id",
                                "aaf.avtp_timestamp",
                                "aaf.format_info",
                                "aaf.nominal_sample_rate",
                                "aaf.channels_per_frame",
                                "aaf.bit_depth",
                                "aaf.stream_data_len",
                                "aaf.sparse_timestamp",
                                "aaf.evtfield",
                                "aaf.data.sample"},
                               "l"),
              expected.str());
    EXPECT_EQ(dissector.complaints(), "");
}

} // namespace
