#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace support {

/// Runs the event loop until @p condition holds. @return false if it does not within 20 s
template <class Condition>
bool waitFor(const Condition &condition) {
    const QDeadlineTimer deadline(20000);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents();
        QThread::usleep(100);
    }
    return true;
}

/// Runs what is queued for this thread right now.
inline void deliverQueued() {
    QCoreApplication::processEvents();
}

} // namespace support
