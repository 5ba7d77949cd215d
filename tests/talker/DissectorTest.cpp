#include <sstream>

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <pcap/pcap.h>

#include "support/Program.h"
#include "talker/AafFrame.h"

namespace {

TEST(Dissector, readsEveryFieldOfTheFramesAndHasNoComplaint) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("frames.pcap")).toStdString();
    pcap_t *handle = pcap_open_dead(DLT_EN10MB, 65535);
    pcap_dumper_t *dumper = pcap_dump_open(handle, path.c_str());
    ASSERT_NE(dumper, nullptr) << pcap_geterr(handle);
    std::ostringstream expected;
    std::uint8_t sequence = 254;
    for (const auto &[channels, samples] : {std::pair(1U, 1U), {2U, 6U}, {255U, 1U}, {256U, 1U}, {1023U, 32U}}) {
        talker::AafFrame frame({2, 0, 0, 0, 0, 0x7f}, {0x91, 0xe0, 0xf0, 0, 0xfe, 0}, channels, samples);
        frame.setSequence(sequence);
        frame.setTimestamp(4294967295U - channels);
        const pcap_pkthdr header = {{}, static_cast<bpf_u_int32>(frame.size()), static_cast<bpf_u_int32>(frame.size())};
        pcap_dump(reinterpret_cast<u_char *>(dumper), &header, frame.data());
        // Address, subtype, stream ID valid, version, timestamp valid, restart, uncertain, sequence, stream ID,
        // timestamp, 16-bit integer, 48 kHz, channels, bit depth, data length, no sparse timestamps, no events.
        expected << "02:00:00:00:00:7f 0x02 1 0x00 1 0 0 " << unsigned{sequence} << " 0x02000000007f0000 "
                 << 4294967295U - channels << " 0x04 0x0005 " << channels << " 16 " << 2 * channels * samples
                 << " 0 0x00\n";
        ++sequence;
    }
    pcap_dump_close(dumper);
    pcap_close(handle);

    std::vector<std::string> arguments = {"-r", path, "-T", "fields", "-E", "separator=/s"};
    for (const char *field : {"eth.src", "ieee1722.subtype", "ieee1722.svfield", "ieee1722.verfield", "aaf.tvfield",
                              "aaf.mrfield", "aaf.tufield", "aaf.seqnum", "aaf.stream_id", "aaf.avtp_timestamp",
                              "aaf.format_info", "aaf.nominal_sample_rate", "aaf.channels_per_frame", "aaf.bit_depth",
                              "aaf.stream_data_len", "aaf.sparse_timestamp", "aaf.evtfield"}) {
        arguments.insert(arguments.end(), {"-e", field});
    }
    const support::Program::Result fields = support::Program("tshark", arguments).wait();
    EXPECT_EQ(fields.exitStatus, 0) << fields.err;
    EXPECT_EQ(fields.out, expected.str());

    const support::Program::Result complaints =
        support::Program("tshark", {"-r", path, "-Y", "_ws.expert or _ws.malformed"}).wait();
    EXPECT_EQ(complaints.exitStatus, 0) << complaints.err;
    EXPECT_EQ(complaints.out, "");
}

} // namespace
