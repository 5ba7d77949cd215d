#pragma once

#include <memory>

#include <QObject>
#include <QThread>

namespace threading {

class Worker;

/**
 * Owns the thread of one worker. Construction moves the worker there and sets it going; destruction ends the worker,
 * ends the thread and waits for it. Belongs on the thread that made it.
 */
class Controller : public QObject {
    Q_OBJECT

public:
    /// Takes the worker: the end of the thread deletes it, on that thread. Null is refused with a warning; such a
    /// controller starts no thread.
    explicit Controller(std::unique_ptr<Worker> worker);
    /// Borrows a worker, which may be the holder of this controller.
    explicit Controller(Worker &worker);
    ~Controller() override;

    /// False for a refused worker, and where the system gave no thread, which a warning has told.
    bool isThreadRunning() const { return workerThread.isRunning(); }

    /// Returns once the worker has done what was queued for it. Never on the worker's thread.
    void settle();

Q_SIGNALS:
    /// Emitted once, to run the worker's progress() on its thread.
    void operate();

private:
    using HeldWorker = std::unique_ptr<Worker, void (*)(Worker *)>;

    explicit Controller(HeldWorker worker);

    HeldWorker worker; ///< null in a controller without worker, and once the thread has deleted it
    QThread workerThread;
};

} // namespace threading
