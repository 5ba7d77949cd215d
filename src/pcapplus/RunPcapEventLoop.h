#pragma once

#include <string>

#include <pcap/pcap.h>

namespace facts {
class AdapterFacts;
} // namespace facts

namespace pcapplus {

/// Whether frames count that the open adapter gathered before the loop was launched.
enum class GatheredFrames { Skip, Deliver };

/// The task of a capture's thread: libpcap's loop, from the first frame to the break. Built and run on that thread.
class RunPcapEventLoop {
public:
    /// @param handle an open adapter; has to stay open until the task is gone
    /// @param launch frames from before are skipped; zero if none are
    /// @param facts of the adapter; have to outlive the task
    RunPcapEventLoop(std::string name, pcap_t *handle, timeval launch, facts::AdapterFacts &facts);
    ~RunPcapEventLoop();
    RunPcapEventLoop(const RunPcapEventLoop &) = delete;
    RunPcapEventLoop &operator=(const RunPcapEventLoop &) = delete;

    /// Captures until pcap_breakloop.
    /// @return false, with libpcap's reason in the log, if the adapter has failed before
    bool run();

private:
    const std::string name;
    pcap_t *handle;
    timeval launch;
    facts::AdapterFacts &facts;
};

} // namespace pcapplus
