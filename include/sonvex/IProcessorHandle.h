#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::ihandles {

/// Starts and stops one processor. Valid until the library unloads, also after the processor was removed; after
/// ISonvex::destroy it only warns.
class SONVEX_EXPORT IProcessorHandle {
public:
    IProcessorHandle();
    IProcessorHandle(const IProcessorHandle &);
    virtual ~IProcessorHandle();
    IProcessorHandle &operator=(const IProcessorHandle &);

    /// Without effect while no processor is bound to the handle.
    virtual void start() = 0;
    /// No result is computed after this returns but the one in work; queued results still arrive.
    virtual void stop() = 0;
    virtual bool isProcessingActive() const = 0;
    /// Processor type, device MAC text and channel number, joined by underscores.
    virtual std::string getUniqueId() const = 0;
    /// False between ISonvex::removeProcessor and the next ISonvex::addProcessor of the same processor in the same run.
    virtual bool isHandleBound() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex::ihandles
