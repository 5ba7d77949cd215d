#include "analyser/Monitor.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>

#include "analyser/LibraryLog.h"
#include "analyser/SignalWatcher.h"
#include "analyser/files/CsvFile.h"
#include "analyser/files/JsonFile.h"
#include "analyser/output/Output.h"
#include "analyser/setUp.h"
#include "analyser/terminal/LiveView.h"
#include "analyser/terminal/PlainView.h"
#include "common/Refusal.h"
#include "common/Text.h"
#include "common/complain.h"
#include "monitoring/describe.h"

namespace analyser {

namespace {

constexpr int tickPeriod = 1000;                    // ms
constexpr std::size_t queueBound = 16U << 20U;      // bytes of results on their way to a listener
constexpr std::size_t waitingBound = 256U << 20U;   // to one that everything waits for
constexpr std::chrono::milliseconds patience(2000); // for a screen to be left

/// Whether both are the same, and one would write over the other.
bool isShared(const struct stat &one, const struct stat &other) {
    return !S_ISCHR(one.st_mode) && one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

} // namespace

Monitor::Monitor(const MonitorOptions &options)
    : options(options), ending(std::make_shared<Ending>(SignalWatcher::endRequested)) {
    for (const OutputOptions &output : options.outputs) {
        outputs.push_back(std::make_shared<Output>(output.file, ending));
    }
    refuseSharedFiles();
    // The library's log would write across a view that redraws.
    const bool logInTheWay = options.log.verbose && ::isatty(STDERR_FILENO) == 1;
    hasScreen =
        options.outputs.front().format == Format::live && LiveView::isPossible(*outputs.front()) && !logInTheWay;
}

Monitor::~Monitor() {
    ending->begin(); // also behind an exception no reader is waited for without an end
}

void Monitor::refuseSharedFiles() const {
    std::vector<struct stat> known;
    struct stat log {};
    if (!options.log.file.empty() && ::stat(options.log.file.c_str(), &log) == 0) {
        known.push_back(log);
    }
    for (const auto &output : outputs) {
        struct stat file {};
        if (::fstat(output->descriptor(), &file) != 0) {
            continue; // writing will say why
        }
        if (std::any_of(known.begin(), known.end(), [&](const auto &other) { return isShared(file, other); })) {
            throw common::Refusal(output->title() + " is already written by another option");
        }
        known.push_back(file);
    }
}

int Monitor::run() {
    SignalWatcher::Handlers handlers;
    handlers.end = [this] { quit(); };
    if (hasScreen) {
        handlers.resize = [this] { onScreen(&LiveView::drawSoon); };
        handlers.stop = [this] { onScreen(&LiveView::leaveScreen); };
        handlers.resume = [this] { onScreen(&LiveView::enterScreen); };
    }
    const SignalWatcher signalWatcher(handlers); // before any thread
    settings = setUp(options);
    session.emplace(settings);
    session->open();
    session->onResult([this](const auto &result) { post(result); });
    session->onMessage([this](const auto &message) { post(message); });

    const std::string note = monitoring::describeLimits(settings.analyses, settings.bufferSize);
    if (!note.empty() && !hasScreen) {
        common::complain(note);
    }
    const std::chrono::milliseconds time(std::lround(options.seconds.value_or(0.0) * 1000.0));
    if (options.seconds) {
        ending->setDeadline(Ending::Clock::now() + time);
    }
    for (const auto &output : outputs) {
        output->onFailure([this] { quit(); });
        output->begin();
    }
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        addListener(index);
    }
    post(std::make_shared<const monitoring::Status>(session->examine()));
    QObject::connect(&ticker, &QTimer::timeout, &ticker, [this] { tick(); });
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.start(tickPeriod);
    session->start();
    if (options.seconds) {
        QTimer::singleShot(time, Qt::PreciseTimer, &ticker, [this] { quit(); });
    }
    QCoreApplication::exec();
    ticker.stop();
    return finish();
}

void Monitor::addListener(std::size_t index) {
    const OutputOptions &output = options.outputs[index];
    std::unique_ptr<monitoring::Listener> listener;
    if (output.format == Format::json) {
        listener = std::make_unique<JsonFile>(outputs[index], settings);
    } else if (output.format == Format::csv) {
        listener = std::make_unique<CsvFile>(outputs[index], settings);
    } else if (hasScreen) {
        auto liveView = std::make_unique<LiveView>(outputs[index], settings);
        view = liveView.get();
        listener = std::move(liveView);
    } else {
        listener = std::make_unique<PlainView>(outputs[index], settings);
    }
    using WhenFull = monitoring::Delivery::WhenFull;
    monitoring::Delivery::Terms terms{queueBound};
    if (output.waits && output.format != Format::live) {
        terms.bound = waitingBound;
        terms.whenFull = WhenFull::wait;
        terms.givesUp = [ending = ending] { return ending->isUrgent(); };
    }
    terms.failed = [this] { quit(); };
    deliveries.push_back(std::make_unique<monitoring::Delivery>(std::move(listener), std::move(terms)));
}

void Monitor::onScreen(void (LiveView::*function)()) {
    if (view != nullptr) {
        // The view itself is as long there as its thread, which may get to this when nobody waits any more.
        deliveries.front()->run([view = view, function] { (view->*function)(); }, patience);
    }
}

void Monitor::quit() {
    ending->begin();
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void Monitor::tick() {
    if (!LibraryLog::shared().failure().empty()) {
        quit();
        return;
    }
    const auto status = std::make_shared<const monitoring::Status>(session->examine());
    post(status);
    if (!hasScreen) {
        say(*status);
    }
}

/// What is new is said once, where the output doesn't show it.
void Monitor::say(const monitoring::Status &status) {
    for (const auto &condition : status.conditions) {
        if (std::none_of(said.begin(), said.end(), [&](const auto &other) { return condition.continues(other); })) {
            common::complain(monitoring::describe(condition, settings));
        }
    }
    if (status.conditions.empty() && !said.empty()) {
        const bool wasSilent =
            std::any_of(said.begin(), said.end(), [](const auto &other) { return other.isSilence(); });
        common::complain(wasSilent ? "results arrive from every channel" : "results have all their samples again");
    }
    said = status.conditions;
}

/// @return the exit status
int Monitor::finish() {
    if (hasScreen) {
        onScreen(&LiveView::leaveScreen); // also a program that is killed while it ends leaves a terminal in order
    }
    session->end();
    endListeners();
    return report();
}

/// While listeners take what is on its way, signals are still heard.
void Monitor::endListeners() {
    const auto status = std::make_shared<const monitoring::Status>(session->examine());
    std::size_t open = deliveries.size();
    const auto ended = [&open] {
        --open;
        QCoreApplication::quit();
    };
    for (const auto &delivery : deliveries) {
        delivery->end(status, [&ended] { QMetaObject::invokeMethod(qApp, ended, Qt::QueuedConnection); });
    }
    while (open > 0) {
        QCoreApplication::exec(); // a loop of another kind would end at once behind the first exec()
    }
}

/// @return the exit status
int Monitor::report() const {
    std::vector<std::string> failures;
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        const std::string &title = outputs[index]->title();
        if (const auto leftOut = deliveries[index]->leftOut(); leftOut.results + leftOut.messages > 0) {
            common::complain(title + " lacks " + monitoring::describe(leftOut) + ", since its reader was too slow");
        }
        failures.push_back(outputs[index]->failure());
        if (const std::string reason = deliveries[index]->failure(); !reason.empty()) {
            failures.push_back("cannot make " + title + ": " + reason);
        }
    }
    if (const std::string reason = LibraryLog::shared().failure(); !reason.empty()) {
        failures.push_back("cannot write the log: " + reason);
    }
    int exitStatus = 0;
    for (const std::string &failure : failures) {
        if (!failure.empty()) {
            common::complain(failure);
            exitStatus = common::Refusal::failure;
        }
    }
    return exitStatus;
}

} // namespace analyser
