#include "pcapplus/RunPcapEventLoop.h"

#include <chrono>
#include <new>
#include <utility>

#include <sys/time.h>

#include "core/facts/AdapterFacts.h"
#include "core/logging/Log.h"
#include "pcapplus/CapturingAdapter.h"
#include "pcapplus/PacketHandlerSlot.h"
#include "pcapplus/UntaggedFrame.h"

namespace pcapplus {

namespace {

/// The frames that the kernel gathered before the launch lie at the front of the ring. Skipping ends with the first one
/// that is newer, or after a second: the clock that stamps frames may be set back meanwhile.
struct Gathered {
    timeval launch;
    std::chrono::steady_clock::time_point patience;
    bool skipping;
    facts::AdapterFacts &facts;
};

void forward(const UntaggedFrame &frame) {
    try {
        forwardCapturedPacket(nullptr, &frame.header(), frame.bytes());
    } catch (const std::bad_alloc &) { // which must not reach libpcap's frames
        logging::warning("pcapplus::RunPcapEventLoop::run", "No memory for what a frame leads to!");
    }
}

void forwardFromLaunchOn(u_char *user, const pcap_pkthdr *header, const u_char *bytes) {
    auto &gathered = *reinterpret_cast<Gathered *>(user);
    if (gathered.skipping) {
        gathered.skipping =
            timercmp(&header->ts, &gathered.launch, <) != 0 && std::chrono::steady_clock::now() < gathered.patience;
        if (gathered.skipping) {
            return;
        }
    }
    const UntaggedFrame frame(*header, bytes);
    if (frame.isReadable()) {
        CapturingAdapter::setTag(frame.tag());
        forward(frame);
    } else {
        CapturingAdapter::countFrameOfNoStream();
    }
    gathered.facts.frameSeen();
}

} // namespace

RunPcapEventLoop::RunPcapEventLoop(std::string name, pcap_t *handle, timeval launch, facts::AdapterFacts &facts)
    : name(std::move(name)), handle(handle), launch(launch), facts(facts) {}

RunPcapEventLoop::~RunPcapEventLoop() {
    logging::debug("pcapplus::RunPcapEventLoop::~RunPcapEventLoop", name, "Released!");
}

bool RunPcapEventLoop::run() {
    static constexpr char context[] = "pcapplus::RunPcapEventLoop::run";
    logging::debug(context, name, "PCAP listener active");
    // The kernel fills the ring from the moment that the adapter is open, and drops what comes once it is full: a loop
    // that began with these frames would deliver the past, and then a gap.
    Gathered gathered{launch, std::chrono::steady_clock::now() + std::chrono::seconds(1), timerisset(&launch), facts};
    const CapturingAdapter adapter(facts);
    const bool failed = pcap_loop(handle, 0, forwardFromLaunchOn, reinterpret_cast<u_char *>(&gathered)) == PCAP_ERROR;
    if (failed) {
        facts.captureFailed(pcap_geterr(handle));
        logging::warning(context, name, "The capture ended by itself! Error message: ", pcap_geterr(handle));
    }
    logging::debug(context, name, "PCAP listener INACTIVE");
    return !failed;
}

} // namespace pcapplus
