#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <thread>

#include <pcap/pcap.h>

#include "live/ThreadTime.h"
#include "pcapplus/openAdapter.h"

namespace live {

/// What the library is compared with: libpcap's loop on a thread of its own, with the adapter opened as there.
class BareCapture {
public:
    explicit BareCapture(const std::string &adapter, pcap_handler callback = ignore, u_char *user = nullptr);
    ~BareCapture();
    BareCapture(const BareCapture &) = delete;
    BareCapture &operator=(const BareCapture &) = delete;

    const ThreadTime &threadTime() const { return *time; }
    /// Frames that the kernel had room for.
    std::uint64_t captured() const;

private:
    static void ignore(u_char * /*user*/, const pcap_pkthdr * /*header*/, const u_char * /*bytes*/) {}

    pcapplus::OpenAdapter handle;
    std::thread thread;
    std::optional<ThreadTime> time;
};

} // namespace live
