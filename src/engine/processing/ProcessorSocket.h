#pragma once

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
    ProcessorSocket(std::string name, std::string uniqueId, process::Processor *processor);

    std::string toString() const override;
    virtual std::string getName() const;
    virtual std::string getUniqueId() const;
    virtual process::Processor *getProcessor();
    virtual process::ProcessConnection *getProcessConnection();
    /// Lets @p handle control the processor, until this socket ends.
    virtual void bindHandle(ProcessorHandle &handle);

    /// Returns once the processor reads its configuration no more; from now on a start only warns. The processor has to
    /// be stopped and the captures ended before.
    void endRun();

private:
    void startProcessor();

    std::string name;
    std::string uniqueId;
    process::Processor *processor; ///< owned by its thread
    process::ProcessConnection processConnection;
    bool runEnded = false;
};

} // namespace engine::processing
