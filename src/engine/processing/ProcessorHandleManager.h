#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/data/StringOverloadBase.h"

namespace engine::processing {

class ProcessorHandle;
class ProcessorSocket;

/// Keeps one handle for each unique ID that was ever used, until the engine ends. Host's thread only.
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

    std::string toString() const override;

private:
    std::map<std::string, std::unique_ptr<ProcessorHandle>> handles; ///< by unique ID
};

} // namespace engine::processing
