#include "engine/processing/ProcessorSocket.h"

#include <utility>

#include "core/logging/Log.h"
#include "engine/processing/ProcessorHandle.h"
#include "process/Processor.h"

namespace engine::processing {

ProcessorSocket::ProcessorSocket(std::string name, std::string uniqueId, std::unique_ptr<process::Processor> processor)
    : ProcessorSocket(std::move(name), std::move(uniqueId), processor.release()) {}

ProcessorSocket::ProcessorSocket(std::string name, std::string uniqueId, process::Processor *processor)
    : Controller(std::unique_ptr<threading::Worker>(processor)), name(std::move(name)), uniqueId(std::move(uniqueId)),
      processor(processor), processConnection(this->name, nullptr) {
    // By signature: a result emitted while the connection object goes would cost Qt the function object of the other
    // form.
    connect(processor, SIGNAL(newProcessData(sonvex::ChannelData)), &processConnection,
            SLOT(signalToCallbackConnector(sonvex::ChannelData)));
    logging::debug("engine::processing::ProcessorSocket::ProcessorSocket", this->name, "Created!");
}

std::string ProcessorSocket::toString() const {
    return "ProcessorSocket: " + getName() + "\n" + processor->toString();
}

std::string ProcessorSocket::getName() const {
    return name;
}

std::string ProcessorSocket::getUniqueId() const {
    return uniqueId;
}

process::Processor *ProcessorSocket::getProcessor() {
    return processor;
}

process::ProcessConnection *ProcessorSocket::getProcessConnection() {
    return &processConnection;
}

void ProcessorSocket::bindHandle(ProcessorHandle &handle) {
    // With this socket as their context, the connections end with it; the handle stays.
    const auto connectToProcessor = [&](auto signal, auto operation) {
        connect(
            &handle, signal, this,
            [this, operation](const std::string &id) {
                if (id == uniqueId) {
                    operation(*processor);
                }
            },
            Qt::DirectConnection);
    };
    connectToProcessor(qOverload<std::string>(&ProcessorHandle::start), [](auto &target) { target.start(); });
    connectToProcessor(qOverload<std::string>(&ProcessorHandle::stop), [](auto &target) { target.stop(); });
    handle.setActiveStateProvider([target = processor] { return target->isProcessingActive(); });
    handle.setHandleBound(true); // last, when nothing can fail any more
}

void ProcessorSocket::retire() {
    settle(); // behind calculations, and change notices
    processor->retire();
}

} // namespace engine::processing
