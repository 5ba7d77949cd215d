#pragma once

#include <future>
#include <string>

#include <QObject>
#include <QRunnable>

#include <pcap/pcap.h>

namespace pcapplus {

/// Whether frames count that the open adapter gathered before the loop was launched.
enum class GatheredFrames { Skip, Deliver };

/**
 * One run of a capture loop, as a task of the global thread pool, which deletes it at the end.
 *
 * The pool is the whole process's: while the loop runs, its thread does not count there, so that other tasks find
 * their slots. The starter releases the slot (QThreadPool::releaseThread), the end of the run takes it back.
 */
class RunPcapEventLoop : public QObject, public QRunnable {
    Q_OBJECT

public:
    /// @param handle an open adapter; has to stay open until the task is gone
    RunPcapEventLoop(const std::string &name, pcap_t *handle, GatheredFrames gathered);
    ~RunPcapEventLoop() override;

    /// Captures until pcap_breakloop, or until the adapter fails.
    void run() override;

    /// Becomes ready, by a broken promise, when the task has been deleted: only wait() on it.
    std::future<void> getEnd();

private:
    std::promise<void> end; ///< broken by the task's deletion, when the loop has let go of the handle
    std::string name;
    pcap_t *handle;
    timeval launch; ///< frames from before are skipped; zero if none are
};

} // namespace pcapplus
