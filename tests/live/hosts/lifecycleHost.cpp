// A host that ends as its arguments say, while frames arrive: WHERE an ACTION happens, and what becomes of the
// APPLICATION object. Its exit status says whether it came to its end.
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <QCoreApplication>
#include <QThread>

#include "live/hosts/HostRun.h"

namespace {

using hosts::HostRun;

std::unique_ptr<HostRun> run;

struct Thrown : std::runtime_error {
    Thrown() : runtime_error("out of a callback") {}
};

void newRun() {
    ISonvex::destroy();
    run = std::make_unique<HostRun>();
}

/// Runs the loop until every analysis of the run has delivered.
void awaitResults() {
    while (!run->isComplete()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void repeat(int times) {
    for (int i = 0; i < times; ++i) {
        newRun();
        awaitResults();
    }
}

/// What handles of an ended run say, and that they move nothing, in the new run neither.
void askEndedHandles() {
    auto &processor = *run->processors.front();
    auto &capture = run->capture;
    ISonvex::destroy();
    for (const bool inANewRun : {false, true}) {
        processor.start();
        capture.start();
        if (processor.isProcessingActive() || capture.isRunning()) {
            throw std::runtime_error("an ended handle started something");
        }
        processor.stop();
        capture.stop();
        if (!inANewRun) {
            run = std::make_unique<HostRun>();
        }
    }
    if (&processor == run->processors.front() || &capture == &run->capture) {
        throw std::runtime_error("a new run gave out an old handle");
    }
    try {
        run->facade.removeProcessor(processor);
        throw std::logic_error("an ended handle removed a processor of the new run");
    } catch (const exceptions::ResourceNotAvailable &) {
    }
    awaitResults();
}

std::atomic<const char *> stalledLine{nullptr};
std::atomic<bool> withoutApplication{false};

/// From now on a thread of the library takes its time over @p line, and may not be there without application object.
void stall(const char *line) {
    stalledLine = line;
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        if (stalledLine != nullptr && text.contains(QLatin1String(stalledLine))) {
            QThread::msleep(100);
            if (withoutApplication) {
                std::_Exit(1);
            }
        }
        std::cerr << text.toStdString() << '\n';
    });
    run->spectrum.setFftOrder(5);
}

const std::map<std::string, void (*)()> actions = {
    {"nothing", [] {}},
    {"exit", [] { std::exit(0); }},
    {"destroy", ISonvex::destroy},
    {"destroyTwice",
     [] {
         ISonvex::destroy();
         ISonvex::destroy();
     }},
    {"destroyAndExit",
     [] {
         ISonvex::destroy();
         std::exit(0);
     }},
    {"removeAndDestroy",
     [] {
         run->removeAll();
         ISonvex::destroy();
     }},
    {"destroyAndRemove",
     [] {
         ISonvex::destroy();
         run->removeAll();
     }},
    {"newRun", newRun},
    {"newRunAndExit",
     [] {
         newRun();
         std::exit(0);
     }},
    {"hundredRuns", [] { repeat(100); }},
    {"askEndedHandles", askEndedHandles},
    {"stallCapture", [] { stall("PCAP listener INACTIVE"); }},
    {"stallProcessor", [] { stall("FFT order is changed to"); }},
    {"throw", [] { throw Thrown(); }},
};

/// Sets a run up and lets the action happen: in plain code behind the loop, in a result's callback, or in the receiver
/// of the first message.
void act(const std::string &where, void (*action)()) {
    bool done = false;
    const auto once = [&] {
        if (!std::exchange(done, true)) {
            action();
        }
    };
    ISonvex::createInstance().setMessageReceiver([&](const auto &) {
        if (where == "message") {
            once();
        }
    });
    run = std::make_unique<HostRun>();
    if (where == "callback") {
        run->onComplete = once;
    }
    try {
        if (where == "loop") {
            awaitResults();
            once();
        }
        while (!done) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    } catch (const Thrown &) {
    }
    ISonvex::createInstance().setMessageReceiver({});
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        return 2;
    }
    const std::string where = argv[1];
    const auto action = actions.at(argv[2]);
    const std::string application = argv[3];
    if (application == "none") { // no loop, so no result; results wait in vain
        run = std::make_unique<HostRun>();
        action();
        return 0;
    }
    auto object = std::make_unique<QCoreApplication>(argc, argv);
    act(where, action);
    if (application == "second") { // with which the run goes on, or another one begins
        object.reset();
        withoutApplication = true;
        QThread::msleep(stalledLine != nullptr ? 200 : 0); // for who is late
        stalledLine = nullptr;
        withoutApplication = false;
        object = std::make_unique<QCoreApplication>(argc, argv);
        for (auto *processor : run->processors) {
            if (processor->isProcessingActive()) {
                throw std::runtime_error("the run goes on without an application object");
            }
            processor->start();
        }
        run->capture.start();
        if (!run->capture.isRunning()) {
            newRun();
        }
        run->results.assign(run->results.size(), 0);
        awaitResults();
    }
    if (application == "goesFirst") { // what the run still needs comes after the application object
        object.reset();
        ISonvex::destroy();
    }
    if (application == "leaked") {
        static QCoreApplication *leaked = object.release();
        return leaked == nullptr ? 1 : 0;
    }
    return 0;
}
