#include "engine/processing/ProcessorSocket.h"

#include <utility>

#include "core/logging/Log.h"
#include "engine/processing/ProcessorHandle.h"
#include "process/Processor.h"

namespace engine::processing {

ProcessorSocket::ProcessorSocket(std::string name, std::string uniqueId, process::Processor *processor)
    : Controller(processor), name(std::move(name)), uniqueId(std::move(uniqueId)), processor(processor),
      processConnection(this->name, nullptr) {
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
    handle.setActiveStateProvider([target = processor] { return target->isProcessingActive(); });
    handle.setHandleBound(true);
    // With this socket as their context, the connections end with it; the handle stays.
    connect(
        &handle, qOverload<std::string>(&ProcessorHandle::start), this,
        [this](const std::string &id) {
            if (id == uniqueId) {
                startProcessor();
            }
        },
        Qt::DirectConnection);
    connect(
        &handle, qOverload<std::string>(&ProcessorHandle::stop), this,
        [this](const std::string &id) {
            if (id == uniqueId) {
                processor->stop();
            }
        },
        Qt::DirectConnection);
}

void ProcessorSocket::startProcessor() {
    if (runEnded) {
        logging::warning("engine::processing::ProcessorSocket::startProcessor", name,
                         "The run was ended by ISonvex::destroy, the processor cannot be started!");
        return;
    }
    processor->start();
}

void ProcessorSocket::endRun() {
    if (isThreadRunning()) {
        // Behind everything that is queued for the processor: calculations, and change notices that may restart it.
        QMetaObject::invokeMethod(
            processor, [] {}, Qt::BlockingQueuedConnection);
    }
    processor->retire();
    runEnded = true;
}

} // namespace engine::processing
