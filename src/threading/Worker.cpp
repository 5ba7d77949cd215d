#include "threading/Worker.h"

#include <QThread>

#include "core/logging/Log.h"

namespace threading {

Worker::Worker(const std::string &name, QObject *parent) : QObject(parent), name(name) {
    logging::debug("threading::Worker::Worker", name, "Initialized");
}

Worker::~Worker() {
    logging::debug("threading::Worker::~Worker", name, "DELETED");
}

void Worker::registerThreadChilds(QThread * /*thread*/) {
    logging::debug("threading::Worker::registerThreadChilds", name,
                   "Method not derived. No extra thread childs will be added to thread",
                   static_cast<const void *>(QThread::currentThreadId()));
}

std::string Worker::getName() const {
    const std::lock_guard<std::mutex> lock(nameMutex);
    return name;
}

void Worker::setName(const std::string &newName) {
    const std::lock_guard<std::mutex> lock(nameMutex);
    name = newName;
}

} // namespace threading
