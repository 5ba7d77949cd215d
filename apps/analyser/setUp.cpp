#include "analyser/setUp.h"

#include <algorithm>
#include <string>

#include <unistd.h>

#include "analyser/ProgressLine.h"
#include "analyser/SignalWatcher.h"
#include "analyser/StreamTable.h"
#include "analyser/fitStreams.h"
#include "common/Refusal.h"
#include "common/Text.h"
#include "common/complain.h"
#include "common/writeIfReady.h"
#include "discovery/Survey.h"
#include "discovery/listen.h"

namespace analyser {

namespace {

using discovery::Findings;
using std::chrono::milliseconds;

constexpr milliseconds leastForNamed(100); // so that another stream of the same source is heard too
constexpr milliseconds mostForNamed(1000);
constexpr milliseconds leastForAll(1000);
constexpr milliseconds mostForAll(3000);  // while there is none
constexpr std::size_t mostChannels = 128; // about half of a core of two
constexpr std::size_t mostStreams = 64;

template <class Condition>
Findings listenUntil(const std::string &device, milliseconds least, milliseconds most, const Condition &isEnough) {
    using Clock = std::chrono::steady_clock;
    ProgressLine line(device);
    const auto begin = Clock::now();
    return discovery::listen(
        device, most, [&](const discovery::Progress &progress) { line.show(progress); },
        [&](const discovery::Survey &heard) {
            return SignalWatcher::endRequested() || (Clock::now() - begin >= least && isEnough(heard.describe(0)));
        });
}

FittedStreams namedStreams(const MonitorOptions &options) {
    const auto &requests = options.streams;
    if (std::all_of(requests.begin(), requests.end(), [](const auto &stream) { return stream.isComplete(); })) {
        return fitStreams(requests, {});
    }
    const Findings findings = listenUntil(options.session.device, leastForNamed, mostForNamed,
                                          [&](const Findings &heard) { return areHeard(requests, heard); });
    return fitStreams(requests, findings);
}

FittedStreams heardStreams(const std::string &device) {
    const Findings findings =
        listenUntil(device, leastForAll, mostForAll, [](const Findings &heard) { return !heard.streams.empty(); });
    if (findings.streams.empty()) {
        (void)common::writeIfReady(STDERR_FILENO, streamTable(findings, device));
        throw common::Refusal("there is nothing to monitor", common::Refusal::failure);
    }
    return allStreams(findings, mostStreams);
}

} // namespace

monitoring::SessionSettings setUp(const MonitorOptions &options) {
    FittedStreams fitted = options.streams.empty() ? heardStreams(options.session.device) : namedStreams(options);
    MonitorOptions complete = options;
    if (complete.analyses.empty() && !fitted.streams.empty()) {
        complete.analyses = overviewOf(fitted.streams, mostChannels, fitted.notes);
    }
    for (const std::string &note : fitted.notes) {
        common::complain(note);
    }
    if (fitted.streams.empty()) {
        throw common::Refusal("none of the streams at '" + options.session.device + "' can be monitored",
                              common::Refusal::failure);
    }
    return settingsFor(complete, fitted.streams);
}

} // namespace analyser
