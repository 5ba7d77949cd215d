#include "engine/streaming/NetworkReceiverHandle.h"

#include <utility>

#include "core/logging/Log.h"

namespace engine::streaming {

NetworkReceiverHandle::NetworkReceiverHandle(std::string uid, std::function<bool()> runningState,
                                             std::shared_ptr<const Run> run, QObject *parent)
    : QObject(parent), uid(std::move(uid)), runningState(std::move(runningState)), run(std::move(run)) {
    logging::debug("engine::streaming::NetworkReceiverHandle::NetworkReceiverHandle", this->uid, "Handle initialized!");
}

void NetworkReceiverHandle::start() {
    if (!run->refusesStart("engine::streaming::NetworkReceiverHandle::start", uid, "the capture cannot be started!")) {
        Q_EMIT start(uid);
    }
}

void NetworkReceiverHandle::stop() {
    if (!run->refuses("engine::streaming::NetworkReceiverHandle::stop", uid, "there is no capture to stop!")) {
        Q_EMIT stop(uid);
    }
}

bool NetworkReceiverHandle::isRunning() const {
    return !run->isOver() && runningState();
}

std::string NetworkReceiverHandle::getUid() const {
    return uid;
}

std::string NetworkReceiverHandle::toString() const {
    return "NetworkReceiverHandle\n\tControlled Network Receiver UID: " + uid;
}

} // namespace engine::streaming
