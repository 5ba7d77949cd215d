#pragma once

#include <memory>
#include <string>

#include <pcap/pcap.h>

namespace pcapplus {

/// How an adapter is opened.
struct AdapterSettings {
    int snapLength;          ///< bytes of a frame that are kept
    int promiscuous;         ///< 1: also frames for other addresses
    int timeoutMilliseconds; ///< how long the kernel may gather frames before it wakes the reader
};

struct CloseAdapter {
    void operator()(pcap_t *handle) const { pcap_close(handle); }
};

/// An open adapter. No capture may be left when it goes.
using OpenAdapter = std::unique_ptr<pcap_t, CloseAdapter>;

/**
 * Opens an adapter like pcap_open_live, with its error texts, but with a capture ring of 32 MiB: the ring of 2 MiB
 * that one gets there holds 7 ms of a single stream, less than one hiccup of a busy machine.
 * The ring is halved until the system grants it. An adapter whose frames have no Ethernet header is refused: nothing on
 * it can be an audio stream, and on some of them pcap_breakloop cannot end a capture.
 * @param error receives the reason if null is returned
 */
OpenAdapter openAdapter(const std::string &device, const AdapterSettings &settings, std::string &error);

} // namespace pcapplus
