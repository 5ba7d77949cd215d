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
 * destroy() once at the end.
 *
 * Threads: the host calls everything, the returned objects included, from the one thread that loaded the library,
 * and runs a Qt event loop on it; results, messages and the internal clock are delivered by that loop.
 *
 * Ownership: the library owns everything that it returns. The host keeps references and deletes nothing.
 */
class SONVEX_EXPORT ISonvex {
public:
    /// The process's only instance; every call gives the same object.
    static ISonvex &createInstance();

    /**
     * Ends a run: stops all processors and captures, waits until no capture loop and no calculation is left, and
     * deletes every configuration object. Afterwards all configuration references are invalid; handles stay valid,
     * but a start() on them only warns. A second call finds nothing left to delete.
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
     * @return the handle that starts and stops the capture of the adapter, shared by all its streams.
     * @throws std::bad_cast for a configuration that is not the library's own
     * @throws exceptions::StreamingDeviceAlreadyExists if the MAC address was added before, on whatever adapter
     * @throws exceptions::InstanceNotCreateable if the adapter cannot be opened or the device has no channels
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
     * @throws exceptions::InstanceNotCreateable if there is no processor of the configuration's type
     */
    virtual sonvex::ihandles::IProcessorHandle &addProcessor(sonvex::IProcessConfiguration &configuration) = 0;

    /**
     * Ends a processor and waits for its thread. The handle stays valid, unbound; so does the metering data source.
     * @throws std::bad_cast for a handle that is not the library's own
     * @throws exceptions::ResourceNotAvailable if the processor was removed before
     */
    virtual void removeProcessor(sonvex::ihandles::IProcessorHandle &handle) = 0;

    /**
     * The tap on a processor's results. There is one per processor handle; it outlives removal and re-adding.
     * @throws exceptions::ResourceNotAvailable if the handle belongs to no processor that was ever added
     */
    virtual sonvex::IMeteringDataSource &getMeteringDataSource(sonvex::ihandles::IProcessorHandle &handle) = 0;

    /// Replaces the receiver of messages; an empty function drops them. It runs on the host's thread.
    virtual void
    setMessageReceiver(const std::function<void(std::shared_ptr<sonvex::imessages::IBaseMessage>)> &receiver) = 0;
};
