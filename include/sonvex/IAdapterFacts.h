#pragma once

#include <cstdint>
#include <string>

#include <sonvex/export.h>

namespace sonvex {

namespace ihandles {
class INetworkReceiverHandle;
} // namespace ihandles

/**
 * What is known of one adapter and its capture, in values that need no log. They count from the first stream that a run
 * adds there, and stay as they are when the run is over, until a run uses the adapter again.
 *
 * Any time on the host's thread. Valid until the library unloads.
 */
class SONVEX_EXPORT IAdapterFacts {
public:
    /**
     * The same object for an adapter on every call.
     * @param systemDeviceName as INetworkDeviceInfo and INetworkReceiverHandle::getUid() give it
     * @throws exceptions::ResourceNotAvailable if no stream was ever to be added there
     */
    static const IAdapterFacts &createInstance(const std::string &systemDeviceName);
    /// The adapter that @p handle starts and stops.
    static const IAdapterFacts &createInstance(const ihandles::INetworkReceiverHandle &handle);

    IAdapterFacts();
    IAdapterFacts(const IAdapterFacts &);
    virtual ~IAdapterFacts();
    IAdapterFacts &operator=(const IAdapterFacts &);

    /// Whether frames are being captured now: false also when a started capture has ended by itself.
    virtual bool isCapturing() const = 0;
    /// What the system said when the latest capture ended by itself, as when the adapter went away; else empty.
    virtual std::string getEndReason() const = 0;
    /// What the system said when the adapter could not be opened, or a thread was refused to its capture; empty if it
    /// could.
    virtual std::string getStartError() const = 0;
    /// Frames that the kernel dropped for want of space while they were captured: this machine was too slow for them.
    /// (On a loopback adapter the kernel counts each of them twice.)
    virtual std::uint64_t getKernelDrops() const = 0;
    /// Frames of the AVTP protocol that were captured.
    virtual std::uint64_t getFramesSeen() const = 0;
    /// Those of them that belong to no stream: of an address that was not added, or of another AVTP subtype; all of
    /// them from when another adapter has taken the reception over.
    virtual std::uint64_t getFramesOfNoStream() const = 0;
};

} // namespace sonvex
