#pragma once

#include <memory>
#include <string>

#include "core/data/StringOverloadBase.h"
#include "core/metering/ProcessConnection.h"
#include "threading/Controller.h"

namespace process {
class Processor;
} // namespace process

namespace engine::processing {

class ProcessorHandle;

/**
 * One processor with its thread, its way out and its unique ID. Destruction ends the processor and waits for its
 * thread. Belongs on the host's thread; results arrive there, queued.
 */
class ProcessorSocket : public StringOverloadBase, public threading::Controller {
public:
    /// Takes the @p processor: the end of its thread deletes it.
    ProcessorSocket(std::string name, std::string uniqueId, std::unique_ptr<process::Processor> processor);

    std::string toString() const override;
    virtual std::string getName() const;
    virtual std::string getUniqueId() const;
    virtual process::Processor *getProcessor();
    virtual process::ProcessConnection *getProcessConnection();
    /// Lets @p handle control the processor, until this socket ends.
    virtual void bindHandle(ProcessorHandle &handle);

    /// For the end of the run: returns once the processor reads its configuration no more. It has to be stopped and the
    /// captures ended before.
    void retire();

private:
    ProcessorSocket(std::string name, std::string uniqueId, process::Processor *processor);

    std::string name;
    std::string uniqueId;
    process::Processor *processor; ///< the controller's worker
    process::ProcessConnection processConnection;
};

} // namespace engine::processing
