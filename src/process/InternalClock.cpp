#include "process/InternalClock.h"

#include <QThread>

#include "core/logging/Log.h"

namespace process {

InternalClock::InternalClock(const std::string &name, QObject *parent) : QObject(parent), DataObjectBase(name) {
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, SIGNAL(timeout()), this, SLOT(timerTimeout()));
    logging::debug("process::InternalClock::InternalClock", getName(), "Clock initialized!");
}

std::string InternalClock::toString() const {
    return "InternalClock: " + getName() + "\n\tClock interval: " + std::to_string(timer.interval()) +
           "\n\tActive: " + (timer.isActive() ? "1" : "0");
}

void InternalClock::retire() {
    retired = true;
    if (timer.thread() == QThread::currentThread()) {
        timer.stop();
    }
}

void InternalClock::start(int msec) {
    if (retired) {
        return;
    }
    timer.start(msec);
    logging::debug("process::InternalClock::start", getName(), "Clock started with interval of ", msec, "milliseconds");
}

void InternalClock::stop() {
    timer.stop();
    logging::debug("process::InternalClock::stop", getName(), "Clock stopped");
}

void InternalClock::timerTimeout() {
    Q_EMIT clock();
}

} // namespace process
