#include "analyser/Monitor.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <unistd.h>

#include <QCoreApplication>

#include "analyser/LibraryLog.h"
#include "analyser/SignalWatcher.h"
#include "analyser/files/CsvFile.h"
#include "analyser/files/JsonFile.h"
#include "analyser/files/Output.h"
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
constexpr std::chrono::milliseconds patience(2000); // for a screen to be left

void quit() {
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

Monitor::Monitor(const MonitorOptions &options) : options(options), session(options.session) {
    for (const OutputOptions &settings : options.outputs) {
        outputs.push_back(std::make_shared<Output>(settings.file, SignalWatcher::endRequested));
    }
    // The library's log would write across a view that redraws.
    const bool logInTheWay = options.log.verbose && ::isatty(STDERR_FILENO) == 1;
    hasScreen =
        options.outputs.front().format == Format::live && LiveView::isPossible(*outputs.front()) && !logInTheWay;
}

Monitor::~Monitor() = default;

int Monitor::run() {
    SignalWatcher::Handlers handlers;
    handlers.end = quit;
    if (hasScreen) {
        handlers.resize = [this] { onScreen(&LiveView::drawSoon); };
        handlers.stop = [this] { onScreen(&LiveView::leaveScreen); };
        handlers.resume = [this] { onScreen(&LiveView::enterScreen); };
    }
    const SignalWatcher signalWatcher(handlers); // before any thread
    session.open();
    session.onResult([this](const auto &result) { post(result); });
    session.onMessage([this](const auto &message) { post(message); });

    const std::string note = monitoring::describeLimits(options.session.analyses, options.session.bufferSize);
    if (!note.empty() && !hasScreen) {
        common::complain(note);
    }
    const std::chrono::milliseconds time(std::lround(options.seconds.value_or(0.0) * 1000.0));
    for (const auto &output : outputs) {
        output->onFailure(quit);
        if (options.seconds) {
            output->setDeadline(std::chrono::steady_clock::now() + time);
        }
        output->begin();
    }
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        addListener(index);
    }
    post(std::make_shared<const monitoring::Status>(session.examine()));
    QObject::connect(&ticker, &QTimer::timeout, &ticker, [this] { tick(); });
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.start(tickPeriod);
    session.start();
    if (options.seconds) {
        QTimer::singleShot(time, Qt::PreciseTimer, &ticker, quit);
    }
    QCoreApplication::exec();
    ticker.stop();
    return finish();
}

void Monitor::addListener(std::size_t index) {
    const OutputOptions &settings = options.outputs[index];
    std::unique_ptr<monitoring::Listener> listener;
    if (settings.format == Format::json) {
        listener = std::make_unique<JsonFile>(outputs[index], options.session);
    } else if (settings.format == Format::csv) {
        listener = std::make_unique<CsvFile>(outputs[index], options.session);
    } else if (hasScreen) {
        auto liveView = std::make_unique<LiveView>(outputs[index], options.session);
        view = liveView.get();
        listener = std::move(liveView);
    } else {
        listener = std::make_unique<PlainView>(outputs[index], options.session);
    }
    using WhenFull = monitoring::Delivery::WhenFull;
    const bool waits = settings.waits && settings.format != Format::live;
    deliveries.push_back(std::make_unique<monitoring::Delivery>(
        std::move(listener), queueBound, waits ? WhenFull::wait : WhenFull::dropOldest, SignalWatcher::endRequested));
}

void Monitor::onScreen(void (LiveView::*function)()) {
    if (view != nullptr) {
        deliveries.front()->run([this, function] { (view->*function)(); }, patience);
    }
}

void Monitor::tick() {
    if (!LibraryLog::shared().failure().empty()) {
        QCoreApplication::quit();
        return;
    }
    const auto status = std::make_shared<const monitoring::Status>(session.examine());
    post(status);
    if (!hasScreen) {
        say(*status);
    }
}

/// What is new is said once, where the output doesn't show it.
void Monitor::say(const monitoring::Status &status) {
    for (const auto &condition : status.conditions) {
        if (std::none_of(said.begin(), said.end(), [&](const auto &other) { return condition.continues(other); })) {
            common::complain(monitoring::describe(condition, options.session));
        }
    }
    if (status.conditions.empty() && !said.empty()) {
        common::complain("results arrive from every channel");
    }
    said = status.conditions;
}

/// @return the exit status
int Monitor::finish() {
    if (hasScreen) {
        onScreen(&LiveView::leaveScreen); // also a program that is killed while it ends leaves a terminal in order
    }
    session.end();
    const auto status = std::make_shared<const monitoring::Status>(session.examine());
    std::uint64_t leftOut = 0;
    for (const auto &delivery : deliveries) {
        delivery->end(status);
        leftOut += delivery->leftOut();
    }
    view = nullptr;
    deliveries.clear(); // waits for the listeners
    std::string failure;
    for (const auto &output : outputs) {
        if (!output->failure().empty()) {
            failure = "cannot write the output: " + output->failure();
        }
    }
    if (failure.empty() && !LibraryLog::shared().failure().empty()) {
        failure = "cannot write the log: " + LibraryLog::shared().failure();
    }
    if (leftOut > 0) {
        common::complain(text::counted(leftOut, "result") + " left out, since a reader was too slow");
    }
    if (!failure.empty()) {
        common::complain(failure);
        return common::Refusal::failure;
    }
    return 0;
}

} // namespace analyser
