#include "engine/processing/ProcessorHandleManager.h"

#include <utility>

#include <sonvex/exceptions.h>

#include "core/logging/Log.h"
#include "engine/processing/ProcessorHandle.h"
#include "engine/processing/ProcessorSocket.h"

namespace engine::processing {

ProcessorHandleManager::ProcessorHandleManager() {
    logging::debug("engine::processing::ProcessorHandleManager::ProcessorHandleManager", "Created!");
}

ProcessorHandleManager::~ProcessorHandleManager() {
    static constexpr char context[] = "engine::processing::ProcessorHandleManager::~ProcessorHandleManager";
    for (auto &entry : handles) {
        entry.second.reset();
    }
    logging::debug(context, "Processor handles cleared!");
    logging::debug(context, "Deleted!");
}

ProcessorHandle *ProcessorHandleManager::getHandle(ProcessorSocket &socket) {
    return handles.count(socket.getUniqueId()) != 0 ? enableHandle(socket) : addHandle(socket);
}

ProcessorHandle *ProcessorHandleManager::addHandle(ProcessorSocket &socket) {
    const std::string uniqueId = socket.getUniqueId();
    const std::string socketName = socket.getName();
    auto made = std::make_unique<ProcessorHandle>(uniqueId, run, nullptr);
    const auto &handle = handles.emplace(uniqueId, std::move(made)).first->second;
    socket.bindHandle(*handle);
    logging::debug("engine::processing::ProcessorHandleManager::addHandle",
                   "Created new Processor handle with unique ID '", uniqueId,
                   "' and added to processor socket: ", socketName);
    return handle.get();
}

ProcessorHandle *ProcessorHandleManager::enableHandle(ProcessorSocket &socket) {
    static constexpr char context[] = "engine::processing::ProcessorHandleManager::enableHandle";
    const std::string uniqueId = socket.getUniqueId();
    const std::string socketName = socket.getName();
    ProcessorHandle &handle = *handles.at(uniqueId);
    if (handle.isHandleBound()) {
        const std::string text = "Processor handle with unique ID '" + uniqueId +
                                 "' is already bound and cannot be bind to processor socket: " + socketName;
        logging::refuse<exceptions::ResourceNotAvailable>(context, text);
    }
    socket.bindHandle(handle);
    logging::debug(context, "Processor handle with unique ID '", uniqueId,
                   "' reactivated to processor socket: ", socketName);
    return &handle;
}

bool ProcessorHandleManager::deactivateProcessorHandle(ProcessorSocket &socket) {
    static constexpr char context[] = "engine::processing::ProcessorHandleManager::deactivateProcessorHandle";
    const std::string uniqueId = socket.getUniqueId();
    const auto handle = handles.find(uniqueId);
    if (handle == handles.end()) {
        logging::warning(context, "Processor handle with unique ID '", uniqueId,
                         "' is not available and cannot be deactiaved by processor socket: ", socket.getName());
        return false;
    }
    handle->second->setHandleBound(false);
    logging::debug(context, "Processor handle with unique ID '", uniqueId, "' is unbound now!");
    return true;
}

void ProcessorHandleManager::stopAllHandles() {
    for (const auto &entry : handles) {
        entry.second->stop();
    }
}

bool ProcessorHandleManager::isCurrent(const ProcessorHandle &handle) const {
    const auto current = handles.find(handle.getUniqueId());
    return current != handles.end() && current->second.get() == &handle;
}

void ProcessorHandleManager::begin(std::shared_ptr<const Run> newRun) {
    formerHandles.reserve(formerHandles.size() + handles.size());
    for (auto &entry : handles) {
        formerHandles.push_back(std::move(entry.second));
    }
    handles.clear();
    run = std::move(newRun);
}

std::string ProcessorHandleManager::toString() const {
    std::string text = "ProcessorHandleManager\n\tList of managed processor handles (UID's):\n";
    for (const auto &entry : handles) {
        text += "\t\t" + entry.first + "\n";
    }
    return text;
}

} // namespace engine::processing
