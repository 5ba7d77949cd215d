#include "analyser/StreamList.h"

#include "analyser/ProgressLine.h"
#include "analyser/SignalWatcher.h"
#include "analyser/StreamJson.h"
#include "analyser/StreamTable.h"
#include "analyser/output/Output.h"
#include "common/Refusal.h"
#include "discovery/listen.h"

namespace analyser {

namespace {

discovery::Findings listenTo(const StreamsOptions &options) {
    ProgressLine line(options.device);
    return discovery::listen(
        options.device, options.duration, [&](const discovery::Progress &progress) { line.show(progress); },
        [](const discovery::Survey & /*heard*/) { return SignalWatcher::endRequested(); });
}

} // namespace

void listStreams(const StreamsOptions &options) {
    const SignalWatcher watcher({[] {}, {}, {}, {}}); // a signal ends the listening, and what was heard is listed
    const discovery::Findings findings = listenTo(options);
    Output output("", std::make_shared<const Ending>(SignalWatcher::endRequested));
    output.write(options.format == Format::json ? streamJson(findings, options.device)
                                                : streamTable(findings, options.device));
    if (!output.failure().empty()) {
        throw common::Refusal(output.failure(), common::Refusal::failure);
    }
}

} // namespace analyser
