#include "engine/processing/ProcessorHandle.h"

#include <utility>

#include "core/logging/Log.h"

namespace engine::processing {

namespace {

bool neverActive() {
    return false;
}

} // namespace

ProcessorHandle::ProcessorHandle(std::string uniqueId, std::shared_ptr<const Run> run, QObject *parent)
    : QObject(parent), uniqueId(std::move(uniqueId)), activeStateProvider(neverActive), run(std::move(run)) {
    logging::debug("engine::processing::ProcessorHandle::ProcessorHandle", this->uniqueId, "Handle initialized!");
}

void ProcessorHandle::start() {
    if (!run->refusesStart("engine::processing::ProcessorHandle::start", uniqueId,
                           "the processor cannot be started!")) {
        Q_EMIT start(uniqueId);
    }
}

void ProcessorHandle::stop() {
    if (!run->refuses("engine::processing::ProcessorHandle::stop", uniqueId, "there is no processor to stop!")) {
        Q_EMIT stop(uniqueId);
    }
}

bool ProcessorHandle::isProcessingActive() const {
    return activeStateProvider();
}

std::string ProcessorHandle::getUniqueId() const {
    return uniqueId;
}

bool ProcessorHandle::isHandleBound() const {
    return boundToSocket;
}

std::string ProcessorHandle::toString() const {
    return "ProcessorHandle\n\tControlled Processor UID: " + uniqueId;
}

void ProcessorHandle::setActiveStateProvider(std::function<bool()> provider) {
    activeStateProvider = std::move(provider);
}

void ProcessorHandle::setHandleBound(bool bound) {
    boundToSocket = bound;
    if (!bound) {
        activeStateProvider = neverActive;
        logging::debug("engine::processing::ProcessorHandle::setHandleBound", uniqueId, "Handle unbound!");
    }
}

} // namespace engine::processing
