// What the thread sanitizer has to tell apart: a worker and its host whom nothing but Qt orders, and the same two with
// a race of the kind that the argument names.
#include <memory>
#include <string>

#include <QCoreApplication>
#include <QThread>

using Amount = std::shared_ptr<int>;
Q_DECLARE_METATYPE(Amount)

namespace {

class Worker : public QObject {
    Q_OBJECT

public:
    int total = 0;

public Q_SLOTS:
    void addAmount(const Amount &amount) { total += *amount; }

Q_SIGNALS:
    void added(const Amount &total);
};

class Host : public QObject {
    Q_OBJECT

public:
    int results = 0;

public Q_SLOTS:
    void count(const Amount &result) { results += *result; }

Q_SIGNALS:
    /// By reference: the end of a copy on this thread would follow that of the worker's, in its count of owners.
    void amount(const Amount &amount);
};

class WorkingThread : public QThread {
public:
    explicit WorkingThread(int &runs) : runs(runs) {}

private:
    void run() override {
        ++runs;
        exec();
    }

    int &runs;
};

[[gnu::noinline]] void changeAfterwards(const Amount &queued) {
    *queued = 2;
}

[[gnu::noinline]] void countOnHost(int &runs) {
    ++runs;
}

} // namespace

int main(int argc, char **argv) {
    const std::string race = argc > 1 ? argv[1] : "";
    const QCoreApplication application(argc, argv);
    qRegisterMetaType<Amount>();
    int runs = 0;
    Host host;
    WorkingThread thread(runs);
    auto *const worker = new Worker;
    worker->moveToThread(&thread);
    QObject::connect(&host, &Host::amount, worker, &Worker::addAmount);
    QObject::connect(worker, &Worker::added, &host, &Host::count);
    QObject::connect(
        &thread, &QThread::finished, worker, [worker] { delete worker; }, Qt::DirectConnection);
    thread.start();
    if (race == "thread") {
        countOnHost(runs);
    }
    for (int i = 0; i < 200; ++i) {
        Q_EMIT host.amount(std::make_shared<int>(1));
    }
    const auto last = std::make_shared<int>(1);
    Q_EMIT host.amount(last);
    if (race == "payload") {
        changeAfterwards(last);
    }
    if (race == "field") {
        worker->addAmount(std::make_shared<int>(1));
    }
    QMetaObject::invokeMethod(
        worker, [worker] { Q_EMIT worker->added(std::make_shared<int>(worker->total)); }, Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
    const bool complete = host.results == 201 && worker->total == 201;
    thread.quit();
    thread.wait();
    return complete && runs == 1 ? 0 : 1;
}

#include "plantedRaces.moc"
