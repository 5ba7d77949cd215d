#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::ihandles {

/// Starts and stops the capture of one adapter, for all streams on it at once. Valid until the library unloads.
class SONVEX_EXPORT INetworkReceiverHandle {
public:
    INetworkReceiverHandle();
    INetworkReceiverHandle(const INetworkReceiverHandle &);
    virtual ~INetworkReceiverHandle();
    INetworkReceiverHandle &operator=(const INetworkReceiverHandle &);

    /// Starts the capture on a thread of Qt's global pool, which gets its slot back for as long as the capture runs; so
    /// QThreadPool::waitForDone() there waits for stop(). Waits for the end of a capture that was just stopped.
    virtual void start() = 0;
    /// Breaks the capture; does not wait for its end.
    virtual void stop() = 0;
    /// True from start() to stop(), also if the capture has ended by itself, as when its adapter goes away.
    virtual bool isRunning() const = 0;
    /// The adapter's system name.
    virtual std::string getUid() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex::ihandles
