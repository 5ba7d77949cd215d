#pragma once

#include <QObject>
#include <QTimer>

#include "core/data/DataObjectBase.h"

namespace process {

/**
 * A timer that drives a processor. It stays on the thread that made it and ticks while that thread's event loop runs;
 * start, stop and retire belong there. It may be destroyed on another thread once it has been retired.
 */
class InternalClock : public QObject, public sonvex::DataObjectBase {
    Q_OBJECT

public:
    InternalClock(const std::string &name, QObject *parent);

    std::string toString() const override;

    /// Stops for good: starts that are still on their way here have no effect any more.
    void retire();

public Q_SLOTS:
    void start(int msec);
    void stop();

Q_SIGNALS:
    void clock();

private Q_SLOTS:
    void timerTimeout();

private:
    QTimer timer;
    bool retired = false;
};

} // namespace process
