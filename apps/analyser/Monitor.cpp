#include "analyser/Monitor.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <unistd.h>

#include <QCoreApplication>

#include "analyser/CsvSink.h"
#include "analyser/JsonSink.h"
#include "analyser/LiveView.h"
#include "analyser/LogObserver.h"
#include "analyser/PlainView.h"
#include "analyser/SignalWatcher.h"
#include "common/Refusal.h"
#include "common/complain.h"

namespace analyser {

namespace {

constexpr int tickPeriod = 1000; // ms

} // namespace

Monitor::Monitor(const MonitorOptions &options)
    : options(options), session(options), output(options.output), sink(makeSink()), probe(options.device),
      diagnosis(options) {}

Monitor::~Monitor() = default;

std::unique_ptr<ResultSink> Monitor::makeSink() {
    if (options.format == Format::json) {
        return std::make_unique<JsonSink>(output, options);
    }
    if (options.format == Format::csv) {
        return std::make_unique<CsvSink>(output, options);
    }
    // The library's log would write across a view that redraws.
    const bool logInTheWay = options.log.verbose && ::isatty(STDERR_FILENO) == 1;
    if (LiveView::isPossible(output) && !logInTheWay) {
        return std::make_unique<LiveView>(output, options);
    }
    return std::make_unique<PlainView>(output, options);
}

int Monitor::run() {
    session.open();
    const auto quit = [] { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection); };
    SignalWatcher::Handlers handlers;
    handlers.end = quit;
    if (sink->needsScreen()) {
        handlers.resize = [this] { sink->resized(); };
        handlers.stop = [this] { sink->leaveScreen(); };
        handlers.resume = [this] { sink->enterScreen(); };
    }
    const SignalWatcher signalWatcher(handlers);
    output.onFailure(quit);
    session.onResult([this](const Result &result) { sink->result(result); });
    session.onMessage([this](const auto &message) { sink->message(message); });

    const std::string note = describeLimits(options.analyses, options.bufferSize);
    if (!note.empty() && !sink->needsScreen()) {
        common::complain(note);
    }
    const std::chrono::milliseconds time(std::lround(options.seconds.value_or(0.0) * 1000.0));
    if (options.seconds) {
        output.setDeadline(std::chrono::steady_clock::now() + time);
    }
    output.begin();
    sink->begin(session.analyses());
    sink->enterScreen();
    latest = measure();
    QObject::connect(&ticker, &QTimer::timeout, &ticker, [this] { tick(); });
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.start(tickPeriod);
    session.start();
    if (options.seconds) {
        QTimer::singleShot(time, Qt::PreciseTimer, &ticker, quit);
    }
    QCoreApplication::exec();

    ticker.stop();
    sink->leaveScreen(); // also a program that is killed while it ends leaves a terminal in order
    session.end();
    sink->summary(measure());
    const std::string logFailure = LogObserver::shared().failure();
    if (!output.failure().empty() || !logFailure.empty()) {
        const bool ofOutput = !output.failure().empty();
        common::complain(ofOutput ? "cannot write the output: " + output.failure()
                                  : "cannot write the log: " + logFailure);
        return common::Refusal::failure;
    }
    return 0;
}

void Monitor::tick() {
    if (!LogObserver::shared().failure().empty()) {
        QCoreApplication::quit();
        return;
    }
    latest = measure();
    latest.conditions = conditions();
    sink->progress(latest);
}

bool Monitor::isOverdue(const Analysis &analysis) const {
    const double period = analysis.options.clock.seconds() * analysis.options.cyclesPerResult();
    const std::chrono::duration<double> silence = std::chrono::steady_clock::now() - analysis.lastSign;
    return silence.count() >= std::max(Diagnosis::patience, 2 * period);
}

Progress Monitor::measure() {
    const LogFacts log = LogObserver::shared().facts();
    Progress progress;
    progress.seconds = session.seconds();
    progress.messages = session.messages();
    progress.packetsMissed = log.packetsMissed;
    for (const auto &[stream, refused] : log.refused) {
        progress.refused.channelAmount += refused.channelAmount;
        progress.refused.dataLength += refused.dataLength;
    }
    const double elapsed = progress.seconds - latest.seconds;
    for (const auto &analysis : session.analyses()) {
        AnalysisProgress entry{analysis.name, analysis.options.mac, analysis.options.channel, analysis.results, 0.0,
                               "running"};
        const std::size_t index = progress.analyses.size();
        if (elapsed > 0.0 && index < latest.analyses.size()) {
            entry.resultsPerSecond = static_cast<double>(entry.results - latest.analyses[index].results) / elapsed;
        }
        if (isOverdue(analysis)) {
            entry.state = "silent";
        } else if (entry.results == 0) {
            entry.state = "waiting";
        }
        progress.analyses.push_back(entry);
    }
    return progress;
}

/// All that stands in the way now. What is new is said once, where the output doesn't show it.
std::string Monitor::conditions() {
    Facts facts;
    facts.adapterState = probe.state();
    facts.seconds = session.seconds();
    facts.log = LogObserver::shared().facts();
    for (const auto &analysis : session.analyses()) {
        const std::string &stream = analysis.options.mac;
        const unsigned channel = analysis.options.channel;
        // The analyses of a channel are silent for the same reason, which is said once.
        const auto known = std::find_if(facts.channels.begin(), facts.channels.end(), [&](const auto &other) {
            return other.stream == stream && other.channel == channel;
        });
        if (known == facts.channels.end()) {
            facts.channels.push_back({stream, channel, isOverdue(analysis)});
        } else {
            known->overdue = known->overdue || isOverdue(analysis);
        }
        if (const auto declared = session.declaredChannels(stream)) {
            facts.declaredChannels[stream] = *declared;
        }
    }
    std::set<std::string> keys;
    std::string text;
    for (const auto &condition : diagnosis.examine(facts)) {
        text += (text.empty() ? "" : "; ") + condition.text;
        keys.insert(condition.key);
        if (said.count(condition.key) == 0 && !sink->needsScreen()) {
            common::complain(condition.text);
        }
    }
    if (keys.empty() && !said.empty() && !sink->needsScreen()) {
        common::complain("results arrive from every channel");
    }
    said = keys;
    return text.empty() ? describeLimits(options.analyses, options.bufferSize) : text;
}

} // namespace analyser
