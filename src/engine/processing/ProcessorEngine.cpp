#include "engine/processing/ProcessorEngine.h"

#include <algorithm>
#include <utility>

#include <QThread>

#include <sonvex/exceptions.h>

#include "core/configuration/ProcessConfiguration.h"
#include "core/logging/Log.h"
#include "engine/processing/ProcessorHandle.h"
#include "engine/processing/ProcessorSocket.h"
#include "process/Processor.h"

namespace engine::processing {

ProcessorEngine::ProcessorEngine() {
    logging::debug("engine::processing::ProcessorEngine::ProcessorEngine", "Created");
}

ProcessorEngine::~ProcessorEngine() {
    static constexpr char context[] = "engine::processing::ProcessorEngine::~ProcessorEngine";
    for (auto &entry : sockets) {
        entry.second.reset();
    }
    logging::debug(context, "Processor sockets cleared!");
    logging::debug(context, "Deleted!");
}

ProcessorHandle *ProcessorEngine::addProcessor(sonvex::ProcessConfiguration &configuration,
                                               avb::AvbAudioBuffer &audioBuffer) {
    static constexpr char context[] = "engine::processing::ProcessorEngine::addProcessor";
    process::ProcessorConfigBase &processorConfig = configuration.getProcessorConfig();
    const std::string name = configuration.getName();
    const std::string channel = std::to_string(configuration.getChannelNumber());
    const std::string mac = configuration.getDeviceMacAddress();
    const std::string uniqueId = processorConfig.getProcessorType() + "_" + mac + "_" + channel;
    if (sockets.count(uniqueId) != 0) {
        const std::string text = "Processor for the given process configuration '" + name + "' already exists";
        logging::refuseWith(exceptions::ProcessorAlreadyExists(text, uniqueId), context, text,
                            " by processor unique ID: ", uniqueId);
    }
    auto socket = std::make_unique<ProcessorSocket>(
        name, uniqueId,
        std::unique_ptr<process::Processor>(factory.createProcessor(name, processorConfig, audioBuffer)));
    if (!socket->isThreadRunning()) {
        const std::string text =
            "There is no thread for the processor of the given process configuration '" + name + "'";
        logging::refuse<exceptions::InstanceNotCreateable>(context, text);
    }
    const auto added = sockets.emplace(uniqueId, std::move(socket)).first;
    logging::debug(context, "Successfully added new Processor instance '", name, "' for streaming device '", mac,
                   "' processing channel: ", configuration.getChannelNumber());
    try {
        return handleManager.getHandle(*added->second);
    } catch (...) {
        sockets.erase(added);
        throw;
    }
}

process::ProcessConnection *ProcessorEngine::getProcessConnection(ProcessorHandle &handle) {
    const std::string uniqueId = handle.getUniqueId();
    const auto socket = sockets.find(uniqueId);
    if (socket == sockets.end() || !handleManager.isCurrent(handle)) {
        const std::string text = "ProcessorSocket for the given processor handle unique ID '" + uniqueId +
                                 "' don't exists! Process connection cannot be found!";
        logging::refuse<exceptions::ResourceNotAvailable>("engine::processing::ProcessorEngine::getProcessConnection",
                                                          text);
    }
    return socket->second->getProcessConnection();
}

void ProcessorEngine::removeProcessor(ProcessorHandle &handle) {
    static constexpr char context[] = "engine::processing::ProcessorEngine::removeProcessor";
    const std::string uniqueId = handle.getUniqueId();
    const auto socket = sockets.find(uniqueId);
    if (socket == sockets.end() || !handleManager.isCurrent(handle)) {
        const std::string text = "ProcessorSocket for the given processor handle (unique ID '" + uniqueId +
                                 "') don't exists! Processor cannot be removed";
        logging::refuse<exceptions::ResourceNotAvailable>(context, text);
    }
    if (socket->second->thread() != QThread::currentThread()) { // where alone its timer can be stopped
        const std::string text =
            "The processor with unique ID '" + uniqueId + "' can be removed on the thread that added it only";
        logging::refuse<exceptions::ResourceNotAvailable>(context, text);
    }
    remove(socket);
}

void ProcessorEngine::remove(Sockets::iterator socket) {
    handleManager.deactivateProcessorHandle(*socket->second);
    sockets.erase(socket);
}

void ProcessorEngine::stop() {
    handleManager.stopAllHandles();
    logging::debug("engine::processing::ProcessorEngine::stop", "Processor engine stopped!");
}

void ProcessorEngine::settle() {
    for (const auto &entry : sockets) {
        entry.second->settle();
    }
}

void ProcessorEngine::retire() {
    for (const auto &entry : sockets) {
        entry.second->retire();
    }
}

void ProcessorEngine::begin(std::shared_ptr<const Run> newRun) {
    while (!sockets.empty()) {
        remove(sockets.begin());
    }
    handleManager.begin(std::move(newRun));
}

bool ProcessorEngine::isOwnThread() const {
    return std::all_of(sockets.begin(), sockets.end(),
                       [](const auto &entry) { return entry.second->thread() == QThread::currentThread(); });
}

} // namespace engine::processing
