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
    /// @throws exceptions::InstanceNotCreateable for an unknown type
    ProcessorHandle *addProcessor(sonvex::ProcessConfiguration &configuration, avb::AvbAudioBuffer &audioBuffer);
    /// @throws exceptions::ResourceNotAvailable
    process::ProcessConnection *getProcessConnection(ProcessorHandle &handle);
    /// Waits for the end of the processor's thread. @throws exceptions::ResourceNotAvailable
    void removeProcessor(ProcessorHandle &handle);
    /// Stops all processors; they can be started again.
    void stop();
    /// Returns once no processor reads a configuration any more; they cannot be started again.
    void endRun();

private:
    ProcessorFactory factory;
    ProcessorHandleManager handleManager;
    std::map<std::string, std::unique_ptr<ProcessorSocket>> sockets; ///< by unique ID
};

} // namespace engine::processing
