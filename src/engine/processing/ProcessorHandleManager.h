#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/data/StringOverloadBase.h"
#include "engine/Run.h"

namespace engine::processing {

class ProcessorHandle;
class ProcessorSocket;

/// Keeps one handle for each unique ID that the run has used, and those of earlier runs, until the engine ends. Host's
/// thread only.
class ProcessorHandleManager : public StringOverloadBase {
public:
    ProcessorHandleManager();
    ~ProcessorHandleManager() override;

    ProcessorHandleManager(const ProcessorHandleManager &) = delete;
    ProcessorHandleManager &operator=(const ProcessorHandleManager &) = delete;

    /// The handle of the socket's unique ID, bound to the socket. @throws what enableHandle() throws
    ProcessorHandle *getHandle(ProcessorSocket &socket);
    /// Makes the handle of a unique ID that is new.
    ProcessorHandle *addHandle(ProcessorSocket &socket);
    /// Binds an existing handle again. @throws exceptions::ResourceNotAvailable if it is bound already
    ProcessorHandle *enableHandle(ProcessorSocket &socket);
    /// Unbinds the socket's handle. @return false, with a warning, if there is none
    bool deactivateProcessorHandle(ProcessorSocket &socket);
    void stopAllHandles();
    /// Whether it is the handle of its unique ID, and none of an earlier run.
    bool isCurrent(const ProcessorHandle &handle) const;
    /// A new run gives out new handles.
    void begin(std::shared_ptr<const Run> newRun);

    std::string toString() const override;

private:
    std::shared_ptr<const Run> run = std::make_shared<const Run>();
    std::vector<std::unique_ptr<ProcessorHandle>> formerHandles;     ///< of runs that are over
    std::map<std::string, std::unique_ptr<ProcessorHandle>> handles; ///< by unique ID
};

} // namespace engine::processing
