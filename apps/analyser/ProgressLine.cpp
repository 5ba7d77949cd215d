#include "analyser/ProgressLine.h"

#include <unistd.h>

#include "common/Text.h"
#include "common/oneLine.h"
#include "common/writeIfReady.h"
#include "discovery/listen.h"

namespace analyser {

namespace {

constexpr char clear[] = "\r\x1b[K";

} // namespace

ProgressLine::ProgressLine(const std::string &device)
    : device(common::oneLine(device)), isTerminal(::isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (shown) {
        (void)common::writeIfReady(STDERR_FILENO, clear);
    }
}

void ProgressLine::show(const discovery::Progress &progress) {
    if (isTerminal) {
        shown = true;
        (void)common::writeIfReady(STDERR_FILENO,
                                   clear + ("listening on " + device + ": " + text::fixed(progress.seconds, 0) +
                                            " of " + text::number(progress.duration) + " s, " +
                                            text::counted(progress.streams, "stream")));
    }
}

} // namespace analyser
