#pragma once

#include <functional>
#include <memory>

#include <sonvex/export.h>

namespace sonvex {
class IMeteringDataSource;
class IProcessConfiguration;
class IStreamConfiguration;
class IVersionInfo;
namespace ihandles {
class INetworkReceiverHandle;
class IProcessorHandle;
} // namespace ihandles
namespace imessages {
class IBaseMessage;
} // namespace imessages
} // namespace sonvex

/**
 * The library's one entry: streams in, processors on their channels, results out.
 *
 * Calling order: make configurations with the `createInstance` factories, add the stream, add processors on its
 * channels, bind a callback to each processor's metering data source, start the handles; stop them, and call
 * destroy() at the end. That was one run; the next thing that is added begins another one.
 *
 * Threads: the host calls everything, the returned objects included, from the one thread that loaded the library,
 * and runs a Qt event loop on it; results, messages and the internal clock are delivered by that loop. Operations may
 * be called from within a callback or a message receiver. The library logs on its own threads too, never under a lock;
 * but what ends a thread waits for it (destroy(), removeProcessor(), the first addition after destroy(), an addition
 * that is refused, a capture's start() after its stop(), the end of the application object, unloading), so a log
 * handler of the host's must not wait for its thread meanwhile. The end of the application object stops all captures
 * and processors, as their handles would; with another application object they can be started again. What is set
 * meanwhile without any, processors do not hear of.
 *
 * Ownership: the library owns everything that it returns. The host keeps references and deletes nothing.
 *
 * Unloading ends a run that goes on, and takes the code away: no reference, message or exception of the library's may
 * be used afterwards, and none of its functions may be on the stack. The code of a bound function has to stay until
 * then. A host may load and unload the library as often as it likes. If it sends `std::string` through queued signals
 * of its own, it registers that type with Qt before it loads the library, whose own registration goes with it.
 */
class SONVEX_EXPORT ISonvex {
public:
    /// The process's only instance; every call gives the same object.
    static ISonvex &createInstance();

    /**
     * Ends a run: stops all processors and captures, waits until no capture loop and no calculation is left, closes the
     * adapters and deletes every configuration object. Afterwards all configuration references are invalid; handles
     * stay valid, but only warn, in later runs too. Results that are on their way still arrive; metering data sources
     * and what is bound to them stay.
     *
     * The next addition, also one that is refused, begins a new run, with the same addresses, adapters and IDs if the
     * host likes, and with new handles; it also ends the threads that the last run has left idle.
     *
     * On another thread than the one that added the processors it warns and does nothing.
     */
    static void destroy();

    /// What the host talks to; the same object on every call.
    static sonvex::IVersionInfo &getVersion();

    ISonvex();
    ISonvex(const ISonvex &);
    virtual ~ISonvex();
    ISonvex &operator=(const ISonvex &);

    /**
     * Adds a stream, and opens its adapter if it is the first stream there.
     *
     * The adapter that was used last for the first time gets the frames of all adapters, for its own streams alone:
     * those of another one receive nothing from then on, also if the stream was refused, or if that adapter could not
     * be opened.
     * @return the handle that starts and stops the capture of the adapter, shared by all its streams.
     * @throws std::bad_cast for a configuration that is not the library's own
     * @throws exceptions::StreamingDeviceAlreadyExists if the MAC address was added before, on whatever adapter
     * @throws exceptions::InstanceNotCreateable if the adapter cannot be opened, if the device has no channels, or if
     * the system refuses the memory for its buffers or a thread
     */
    virtual sonvex::ihandles::INetworkReceiverHandle &
    addRemoteStreamReceiver(sonvex::IStreamConfiguration &configuration) = 0;

    /**
     * Adds a processor on a channel of a stream that was added before. It starts inactive. At most one processor of
     * a type can exist per channel.
     * @return its handle; the one of earlier times if the same processor was removed before.
     * @throws std::bad_cast for a configuration that is not the library's own
     * @throws exceptions::ResourceNotAvailable if there is no such stream or channel
     * @throws exceptions::ProcessorAlreadyExists if the channel has a processor of this type
     * @throws exceptions::InstanceNotCreateable if there is no processor of the configuration's type, or if the system
     * gives no thread
     */
    virtual sonvex::ihandles::IProcessorHandle &addProcessor(sonvex::IProcessConfiguration &configuration) = 0;

    /**
     * Ends a processor and waits for its thread. The handle stays valid, unbound; so does the metering data source.
     * Results that are on their way do not arrive.
     * @throws std::bad_cast for a handle that is not the library's own
     * @throws exceptions::ResourceNotAvailable if the processor was removed before, if the handle is one of an earlier
     * run, or on another thread than the one that added the processor
     */
    virtual void removeProcessor(sonvex::ihandles::IProcessorHandle &handle) = 0;

    /**
     * The tap on a processor's results. There is one per processor handle; it outlives removal and re-adding.
     * @throws exceptions::ResourceNotAvailable if the handle belongs to no processor that was ever added
     */
    virtual sonvex::IMeteringDataSource &getMeteringDataSource(sonvex::ihandles::IProcessorHandle &handle) = 0;

    /// Replaces the receiver of messages; an empty function drops them. It runs on the host's thread. The one message
    /// that comes is sonvex::imessages::IChannelAmountChanged, and it comes as often as its adapter has streams.
    virtual void
    setMessageReceiver(const std::function<void(std::shared_ptr<sonvex::imessages::IBaseMessage>)> &receiver) = 0;
};
