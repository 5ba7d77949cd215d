#include "talker/CaptureFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include <pcap/pcap.h>

#include "common/Refusal.h"

namespace talker {

void CaptureFile::Close::operator()(pcap *opened) const {
    pcap_close(opened);
}

CaptureFile::CaptureFile(const std::string &path) : path(path) {
    const auto refuse = [&path](const std::string &reason) {
        throw common::Refusal("capture file '" + path + "': " + reason);
    };
    std::array<char, PCAP_ERRBUF_SIZE> reason = {};
    handle.reset(pcap_open_offline_with_tstamp_precision(path.c_str(), PCAP_TSTAMP_PRECISION_NANO, reason.data()));
    if (!handle) {
        refuse(reason.data());
    }
    const int linkType = pcap_datalink(handle.get());
    if (linkType != DLT_EN10MB) {
        const char *const name = pcap_datalink_val_to_description_or_dlt(linkType);
        refuse(std::string("has frames of the type ") + name + ", Ethernet is needed");
    }
    const Frame *first = nullptr;
    try {
        first = read();
    } catch (const std::runtime_error &error) {
        throw common::Refusal(error.what());
    }
    if (first == nullptr) {
        refuse("holds no frames");
    }
}

const CaptureFile::Frame *CaptureFile::next() {
    return std::exchange(isFirst, false) ? &frame : read();
}

const CaptureFile::Frame *CaptureFile::read() {
    pcap_pkthdr *header = nullptr;
    const int result = pcap_next_ex(handle.get(), &header, &frame.bytes);
    if (result == PCAP_ERROR_BREAK) { // as for the end of a file
        return nullptr;
    }
    if (result != 1) {
        throw std::runtime_error("capture file '" + path + "': " + pcap_geterr(handle.get()));
    }
    constexpr std::int64_t lastSecond = 9'000'000'000; // 64 bits hold as many nanoseconds
    const auto second = std::clamp<std::int64_t>(header->ts.tv_sec, 0, lastSecond);
    frame.time = std::chrono::seconds(second) + std::chrono::nanoseconds(header->ts.tv_usec);
    frame.size = header->caplen;
    frame.isComplete = header->caplen >= header->len;
    return &frame;
}

} // namespace talker
