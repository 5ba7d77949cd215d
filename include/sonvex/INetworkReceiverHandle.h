#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::ihandles {

/// Starts and stops the capture of one adapter, for all streams on it at once. Valid until the library unloads; after
/// ISonvex::destroy it only warns.
class SONVEX_EXPORT INetworkReceiverHandle {
public:
    INetworkReceiverHandle();
    INetworkReceiverHandle(const INetworkReceiverHandle &);
    virtual ~INetworkReceiverHandle();
    INetworkReceiverHandle &operator=(const INetworkReceiverHandle &);

    /// Starts the capture on a thread of its own. Waits for the end of a capture that was just stopped. If the system
    /// gives no thread, a warning says so and isRunning() stays false. If the adapter went away since the last start,
    /// it is opened anew; where that fails, isRunning() stays false as well.
    virtual void start() = 0;
    /// Breaks the capture; does not wait for its end.
    virtual void stop() = 0;
    /// True from start() to stop(), also if the capture has ended by itself, as when its adapter goes away; a warning
    /// gives the reason then, and stop() and start() go on with an adapter of the same name.
    virtual bool isRunning() const = 0;
    /// The adapter's system name.
    virtual std::string getUid() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex::ihandles
