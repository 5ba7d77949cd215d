#include "threading/Controller.h"

#include "core/logging/Log.h"
#include "threading/Worker.h"

namespace threading {

Controller::Controller(Worker *worker, WorkerOwnership ownership) : worker(worker), ownership(ownership) {
    if (worker == nullptr) {
        logging::warning("threading::Controller::Controller",
                         "The given worker cannot be controlled! Nullpointer passed!");
        return;
    }
    worker->moveToThread(&workerThread);
    worker->registerThreadChilds(&workerThread);
    if (ownership == WorkerOwnership::Thread) {
        // Deleted at once, on its thread: a deferred deletion would never come once the application object has gone.
        connect(
            &workerThread, &QThread::finished, worker, [worker] { delete worker; }, Qt::DirectConnection);
    }
    connect(this, &Controller::operate, worker, &Worker::progress);
    workerThread.start();
    Q_EMIT operate();
    initialized = true;
}

Controller::~Controller() {
    if (!initialized) {
        logging::warning("threading::Controller::~Controller", "Controller not initialized!");
        return;
    }
    // The thread may delete the worker from quit() on, so its name is kept.
    const std::string name = worker->getName();
    logging::debug("threading::Controller::~Controller", name, "Quit worker thread...");
    const bool deletedByThread = isThreadRunning();
    worker->end();
    workerThread.quit();
    workerThread.wait();
    if (!deletedByThread && ownership == WorkerOwnership::Thread) {
        delete worker; // the system gave no thread that could have done it
    }
    logging::debug("threading::Controller::~Controller", name, "Worker thread ended");
}

} // namespace threading
