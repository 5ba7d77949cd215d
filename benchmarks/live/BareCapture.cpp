#include "live/BareCapture.h"

#include <stdexcept>

namespace live {

BareCapture::BareCapture(const std::string &adapter, pcap_handler callback, u_char *user) {
    std::string error;
    constexpr pcapplus::AdapterSettings asNetworkReceiver = {65536, 1, 1};
    handle = pcapplus::openAdapter(adapter, asNetworkReceiver, error);
    if (!handle) {
        throw std::runtime_error(error);
    }
    bpf_program filter = {};
    if (pcap_compile(handle.get(), &filter, "ether proto 0x22f0", 1, PCAP_NETMASK_UNKNOWN) != 0 ||
        pcap_setfilter(handle.get(), &filter) != 0) {
        throw std::runtime_error(pcap_geterr(handle.get()));
    }
    pcap_freecode(&filter);
    time.emplace([&] { thread = std::thread([this, callback, user] { pcap_loop(handle.get(), 0, callback, user); }); });
}

BareCapture::~BareCapture() {
    pcap_breakloop(handle.get());
    thread.join();
}

std::uint64_t BareCapture::captured() const {
    pcap_stat statistics{};
    if (pcap_stats(handle.get(), &statistics) != 0) {
        throw std::runtime_error(pcap_geterr(handle.get()));
    }
    return statistics.ps_recv - statistics.ps_drop;
}

} // namespace live
