#include "threading/Controller.h"

#include <utility>

#include "core/logging/Log.h"
#include "threading/Worker.h"

namespace threading {

Controller::Controller(std::unique_ptr<Worker> worker)
    : Controller(HeldWorker(worker.release(), [](Worker *owned) { delete owned; })) {}

Controller::Controller(Worker &worker) : Controller(HeldWorker(&worker, [](Worker * /*borrowed*/) {})) {}

Controller::Controller(HeldWorker heldWorker) : worker(std::move(heldWorker)) {
    static constexpr char context[] = "threading::Controller::Controller";
    if (worker == nullptr) {
        logging::warning(context, "The given worker cannot be controlled! Nullpointer passed!");
        return;
    }
    worker->moveToThread(&workerThread);
    worker->registerThreadChilds(&workerThread);
    // Let go at once, on its thread: a deferred deletion would never come once the application object has gone.
    connect(
        &workerThread, &QThread::finished, worker.get(), [this] { worker.reset(); }, Qt::DirectConnection);
    connect(this, &Controller::operate, worker.get(), &Worker::progress);
    Q_EMIT operate(); // waits there for the thread: nothing may fail once that runs
    workerThread.start();
    if (!isThreadRunning()) {
        logging::warning(context, worker->getName(), "The system refused a thread!");
    }
}

Controller::~Controller() {
    static constexpr char context[] = "threading::Controller::~Controller";
    if (worker == nullptr) {
        logging::warning(context, "Controller not initialized!");
        return;
    }
    // The thread may delete the worker from quit() on, so its name is kept.
    const std::string name = worker->getName();
    logging::debug(context, name, "Quit worker thread...");
    worker->end();
    workerThread.quit();
    workerThread.wait();
    worker.reset(); // where the system gave no thread that could have done it
    logging::debug(context, name, "Worker thread ended");
}

void Controller::settle() {
    if (isThreadRunning()) {
        QMetaObject::invokeMethod(
            worker.get(), [] {}, Qt::BlockingQueuedConnection);
    }
}

} // namespace threading
