#include "engine/processing/ProcessorEngine.h"

#include <utility>

#include <sonvex/exceptions.h>

#include "core/configuration/ProcessConfiguration.h"
#include "core/logging/Log.h"
#include "engine/processing/ProcessorHandle.h"
#include "engine/processing/ProcessorSocket.h"

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
        logging::refuse(exceptions::ProcessorAlreadyExists(text, uniqueId), context, text,
                        " by processor unique ID: ", uniqueId);
    }
    auto socket =
        std::make_unique<ProcessorSocket>(name, uniqueId, factory.createProcessor(name, processorConfig, audioBuffer));
    ProcessorSocket &added = *sockets.emplace(uniqueId, std::move(socket)).first->second;
    logging::debug(context, "Successfully added new Processor instance '", name, "' for streaming device '", mac,
                   "' processing channel: ", configuration.getChannelNumber());
    return handleManager.getHandle(added);
}

process::ProcessConnection *ProcessorEngine::getProcessConnection(ProcessorHandle &handle) {
    const std::string uniqueId = handle.getUniqueId();
    const auto socket = sockets.find(uniqueId);
    if (socket == sockets.end()) {
        const std::string text = "ProcessorSocket for the given processor handle unique ID '" + uniqueId +
                                 "' don't exists! Process connection cannot be found!";
        logging::refuse(exceptions::ResourceNotAvailable(text),
                        "engine::processing::ProcessorEngine::getProcessConnection", text);
    }
    return socket->second->getProcessConnection();
}

void ProcessorEngine::removeProcessor(ProcessorHandle &handle) {
    const std::string uniqueId = handle.getUniqueId();
    const auto socket = sockets.find(uniqueId);
    if (socket == sockets.end()) {
        const std::string text = "ProcessorSocket for the given processor handle (unique ID '" + uniqueId +
                                 "') don't exists! Processor cannot be removed";
        logging::refuse(exceptions::ResourceNotAvailable(text), "engine::processing::ProcessorEngine::removeProcessor",
                        text);
    }
    handleManager.deactivateProcessorHandle(*socket->second);
    sockets.erase(socket);
}

void ProcessorEngine::stop() {
    handleManager.stopAllHandles();
    logging::debug("engine::processing::ProcessorEngine::stop", "Processor engine stopped!");
}

void ProcessorEngine::endRun() {
    for (const auto &entry : sockets) {
        entry.second->endRun();
    }
}

} // namespace engine::processing
