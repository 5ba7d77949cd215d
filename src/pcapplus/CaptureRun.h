#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "pcapplus/RunPcapEventLoop.h"

namespace pcapplus {

/**
 * One run of a capture, from a start to a stop: the thread, its loop, its end and the reason of it. It has a thread of
 * its own rather than one of the global pool: a pool that is refused a thread keeps waiting for it, at the host's end
 * too, and a capture would hold a slot for hours.
 *
 * Threads: all operations on the sniffer's thread; the loop and its end on the run's.
 */
class CaptureRun {
public:
    /// @param handle an open adapter; has to stay open until this is gone
    /// @throws std::system_error if the system gives no thread; then there is nothing to end
    /// @param facts of the adapter, which the loop writes
    CaptureRun(const std::string &name, pcap_t *handle, GatheredFrames gathered,
               std::shared_ptr<facts::AdapterFacts> facts);
    /// Breaks the loop and waits for its end.
    ~CaptureRun();
    CaptureRun(const CaptureRun &) = delete;
    CaptureRun &operator=(const CaptureRun &) = delete;

    /// Lets the loop end soon. Once is enough: a break that no loop is left to see would end the next one.
    void breakLoop();
    /// Returns when the loop has ended, for which it may need a breakLoop().
    void wait();
    /// Whether the loop has ended because the adapter failed, and not by a break.
    bool hasFailed() const { return failed; }

private:
    pcap_t *handle;
    bool broken = false;
    std::atomic<bool> failed{false};
    std::thread thread;
};

} // namespace pcapplus
