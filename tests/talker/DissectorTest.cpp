#include <sstream>

#include <gtest/gtest.h>

#include "support/Dissector.h"
#include "talker/AafFrame.h"

namespace {

TEST(Dissector, readsEveryFieldOfTheFramesAndHasNoComplaint) {
    std::vector<std::vector<std::uint8_t>> frames;
    std::ostringstream expected;
    std::uint8_t sequence = 254;
    for (const auto &[channels, samples] : {std::pair(1U, 1U), {2U, 6U}, {255U, 1U}, {256U, 1U}, {1023U, 32U}}) {
        talker::AafFrame frame({2, 0, 0, 0, 0, 0x7f}, {0x91, 0xe0, 0xf0, 0, 0xfe, 0}, channels, samples);
        frame.setSequence(sequence);
        frame.setTimestamp(4294967295U - channels);
        frames.emplace_back(frame.data(), frame.data() + frame.size());
        // Address, subtype, stream ID valid, version, timestamp valid, restart, uncertain, sequence, stream ID,
        // timestamp, 16-bit integer, 48 kHz, channels, bit depth, data length, no sparse timestamps, no events.
        expected << "02:00:00:00:00:7f 0x02 1 0x00 1 0 0 " << unsigned{sequence} << " 0x02000000007f0000 "
                 << 4294967295U - channels << " 0x04 0x0005 " << channels << " 16 " << 2 * channels * samples
                 << " 0 0x00\n";
        ++sequence;
    }

    const support::Dissector dissector(frames);
    EXPECT_EQ(dissector.fields({"eth.src", "ieee1722.subtype", "ieee1722.svfield", "ieee1722.verfield", "aaf.tvfield",
                                "aaf.mrfield", "aaf.tufield", "aaf.seqnum", "aaf.stream_id", "aaf.avtp_timestamp",
                                "aaf.format_info", "aaf.nominal_sample_rate", "aaf.channels_per_frame", "aaf.bit_depth",
                                "aaf.stream_data_len", "aaf.sparse_timestamp", "aaf.evtfield"}),
              expected.str());
    EXPECT_EQ(dissector.complaints(), "");
}

} // namespace
