#include "analyser/StreamList.h"

#include <string>

#include <unistd.h>

#include "analyser/SignalWatcher.h"
#include "analyser/StreamJson.h"
#include "analyser/StreamTable.h"
#include "analyser/output/Output.h"
#include "common/Refusal.h"
#include "common/Text.h"
#include "common/oneLine.h"
#include "common/writeIfReady.h"
#include "discovery/listen.h"

namespace analyser {

namespace {

/// A line on the terminal of the error output that is written over, and gone in the end.
class ProgressLine {
public:
    ProgressLine() = default;
    ~ProgressLine() {
        if (shown) {
            (void)common::writeIfReady(STDERR_FILENO, clear);
        }
    }
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    void show(const std::string &line) {
        if (isTerminal) {
            shown = true;
            (void)common::writeIfReady(STDERR_FILENO, clear + line);
        }
    }

private:
    const std::string clear = "\r\x1b[K";
    const bool isTerminal = ::isatty(STDERR_FILENO) == 1;
    bool shown = false;
};

discovery::Findings listenTo(const StreamsOptions &options) {
    ProgressLine line;
    const std::string device = common::oneLine(options.device);
    return discovery::listen(
        options.device, options.duration,
        [&](const discovery::Progress &progress) {
            line.show("listening on " + device + ": " + text::fixed(progress.seconds, 0) + " of " +
                      text::number(progress.duration) + " s, " + text::counted(progress.streams, "stream"));
        },
        SignalWatcher::endRequested);
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
