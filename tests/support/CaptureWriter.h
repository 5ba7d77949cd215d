#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include <pcap/pcap.h>

namespace support {

/// Writes a capture file, which is complete when this is gone.
class CaptureWriter {
public:
    explicit CaptureWriter(const std::string &path, int linkType = DLT_EN10MB)
        : handle(pcap_open_dead_with_tstamp_precision(linkType, 262144, PCAP_TSTAMP_PRECISION_NANO)),
          dumper(pcap_dump_open(handle, path.c_str())) {}
    ~CaptureWriter() {
        pcap_dump_close(dumper);
        pcap_close(handle);
    }
    CaptureWriter(const CaptureWriter &) = delete;
    CaptureWriter &operator=(const CaptureWriter &) = delete;

    /// @param missing bytes that the frame had on the wire but not in the file
    void add(const std::vector<std::uint8_t> &frame, std::chrono::nanoseconds time = {}, std::size_t missing = 0) {
        pcap_pkthdr header = {};
        header.ts.tv_sec = time.count() / 1'000'000'000;
        header.ts.tv_usec = time.count() % 1'000'000'000;
        header.caplen = static_cast<bpf_u_int32>(frame.size());
        header.len = static_cast<bpf_u_int32>(frame.size() + missing);
        pcap_dump(reinterpret_cast<u_char *>(dumper), &header, frame.data());
    }

private:
    pcap_t *handle;
    pcap_dumper_t *dumper;
};

} // namespace support
