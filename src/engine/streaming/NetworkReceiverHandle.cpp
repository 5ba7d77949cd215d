#include "engine/streaming/NetworkReceiverHandle.h"

#include <utility>

#include "core/logging/Log.h"

namespace engine::streaming {

NetworkReceiverHandle::NetworkReceiverHandle(std::string uid, std::function<bool()> runningState, QObject *parent)
    : QObject(parent), uid(std::move(uid)), runningState(std::move(runningState)) {
    logging::debug("engine::streaming::NetworkReceiverHandle::NetworkReceiverHandle", this->uid, "Handle initialized!");
}

void NetworkReceiverHandle::start() {
    Q_EMIT start(uid);
}

void NetworkReceiverHandle::stop() {
    Q_EMIT stop(uid);
}

bool NetworkReceiverHandle::isRunning() const {
    return runningState();
}

std::string NetworkReceiverHandle::getUid() const {
    return uid;
}

std::string NetworkReceiverHandle::toString() const {
    return "NetworkReceiverHandle\n\tControlled Network Receiver UID: " + uid;
}

} // namespace engine::streaming
