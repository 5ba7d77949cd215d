#include "pcapplus/openAdapter.h"

namespace pcapplus {

namespace {

constexpr int largestRing = 32 * 1024 * 1024;
constexpr int smallestRing = 2 * 1024 * 1024;

/// The text that pcap_open_live gives for the same failure.
std::string describeFailure(const std::string &device, pcap_t *handle, int status) {
    const std::string detail = pcap_geterr(handle);
    if (status == PCAP_ERROR) {
        return device + ": " + detail;
    }
    const bool detailed = status == PCAP_ERROR_NO_SUCH_DEVICE || status == PCAP_ERROR_PERM_DENIED ||
                          status == PCAP_ERROR_PROMISC_PERM_DENIED;
    std::string text = device + ": " + pcap_statustostr(status);
    if (detailed && !detail.empty()) {
        text += " (" + detail + ")";
    }
    return text;
}

} // namespace

OpenAdapter openAdapter(const std::string &device, const AdapterSettings &settings, std::string &error) {
    for (int ring = largestRing;; ring /= 2) {
        char message[PCAP_ERRBUF_SIZE] = "";
        OpenAdapter adapter(pcap_create(device.c_str(), message));
        pcap_t *const handle = adapter.get();
        if (handle == nullptr) {
            error = message;
            return nullptr;
        }
        pcap_set_snaplen(handle, settings.snapLength);
        pcap_set_promisc(handle, settings.promiscuous);
        pcap_set_timeout(handle, settings.timeoutMilliseconds);
        pcap_set_buffer_size(handle, ring);
        const int status = pcap_activate(handle);
        if (status >= 0 && pcap_datalink(handle) == DLT_EN10MB) {
            return adapter;
        }
        if (status >= 0) {
            error = device + ": no Ethernet adapter";
            return nullptr;
        }
        error = describeFailure(device, handle, status);
        // A refused ring comes as the general error; the usual causes, a missing adapter or permission, have their own.
        if (status != PCAP_ERROR || ring <= smallestRing) {
            return nullptr;
        }
    }
}

} // namespace pcapplus
