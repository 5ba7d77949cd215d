#include "support/waitFor.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace support {

bool waitFor(const std::function<bool()> &condition) {
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

void deliverQueued() {
    QCoreApplication::processEvents();
}

} // namespace support
