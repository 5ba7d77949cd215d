#pragma once

#include <map>
#include <memory>
#include <string>

#include "engine/processing/ProcessorFactory.h"
#include "engine/processing/ProcessorHandleManager.h"

namespace avb {
class AvbAudioBuffer;
} // namespace avb
namespace process {
class ProcessConnection;
} // namespace process
namespace sonvex {
class ProcessConfiguration;
} // namespace sonvex

namespace engine::processing {

class ProcessorHandle;
class ProcessorSocket;

/// The register of running processors. All operations belong on the host's thread, which has to run an event loop.
class ProcessorEngine {
public:
    ProcessorEngine();
    /// Ends all processors and waits for their threads.
    ~ProcessorEngine();

    ProcessorEngine(const ProcessorEngine &) = delete;
    ProcessorEngine &operator=(const ProcessorEngine &) = delete;

    /// @throws exceptions::ProcessorAlreadyExists if type, device and channel have a processor
    /// @throws exceptions::InstanceNotCreateable for an unknown type, or if the system gives no thread
    ProcessorHandle *addProcessor(sonvex::ProcessConfiguration &configuration, avb::AvbAudioBuffer &audioBuffer);
    /// @throws exceptions::ResourceNotAvailable
    process::ProcessConnection *getProcessConnection(ProcessorHandle &handle);
    /// Waits for the end of the processor's thread.
    /// @throws exceptions::ResourceNotAvailable, also on another thread than the one that added the processor
    void removeProcessor(ProcessorHandle &handle);
    /// Stops all processors; they can be started again.
    void stop();
    /// Returns once nothing is queued for a processor. All have to be stopped, and the captures too.
    void settle();
    /// Follows the end of the run: returns once no processor reads a configuration any more.
    void retire();
    /// Drops what the last run has left, but for the handles, which a host may hold.
    void begin(std::shared_ptr<const Run> newRun);
    /// Whether all processors were added on this thread, which alone can end them.
    bool isOwnThread() const;

private:
    using Sockets = std::map<std::string, std::unique_ptr<ProcessorSocket>>;

    void remove(Sockets::iterator socket);

    ProcessorFactory factory;
    ProcessorHandleManager handleManager;
    Sockets sockets; ///< by unique ID
};

} // namespace engine::processing
