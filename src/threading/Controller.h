#pragma once

#include <QObject>
#include <QThread>

namespace threading {

class Worker;

/// Who destroys a worker once its thread has ended.
enum class WorkerOwnership {
    /// The end of the thread deletes the worker, on that thread.
    Thread,
    /// The worker belongs to whoever holds the controller, the worker itself for instance.
    Holder
};

/**
 * Owns the thread of one worker. Construction moves the worker there and sets it going; destruction ends the worker,
 * ends the thread and waits for it. Belongs on the thread that made it.
 */
class Controller : public QObject {
    Q_OBJECT

public:
    /// A null @p worker is refused with a warning; such a controller starts no thread.
    explicit Controller(Worker *worker, WorkerOwnership ownership = WorkerOwnership::Thread);
    ~Controller() override;

    /// False for a refused worker, and where the system gave no thread.
    bool isThreadRunning() const { return workerThread.isRunning(); }

Q_SIGNALS:
    /// Emitted once, to run the worker's progress() on its thread.
    void operate();

private:
    QThread workerThread;
    Worker *worker;
    WorkerOwnership ownership;
    bool initialized = false;
};

} // namespace threading
