#include "analyser/terminal/PlainView.h"

#include "analyser/output/Output.h"
#include "common/Text.h"
#include "monitoring/describe.h"

namespace analyser {

PlainView::PlainView(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings)
    : output(std::move(newOutput)) {
    for (const auto &analysis : newSettings.analyses) {
        panels.try_emplace(analysis.get(), *analysis, newSettings);
    }
}

PlainView::~PlainView() = default;

void PlainView::result(const monitoring::Result &result) {
    panels.at(result.analysis.get()).take(result);
}

void PlainView::message(const monitoring::Message &message) {
    output->write("message: " + monitoring::describe(message) + '\n');
}

void PlainView::status(const monitoring::Status &status) {
    if (status.seconds <= 0.0) { // not yet started
        return;
    }
    std::string lines;
    for (const auto &entry : status.analyses) {
        lines += text::fixed(status.seconds, 1) + " s  " + entry.analysis->name() + "  " +
                 monitoring::describe(entry.state) + "  " + text::fixed(entry.resultsPerSecond, 1) + " results/s  " +
                 panels.at(entry.analysis.get()).panel().takeHeadline() + "  messages " +
                 std::to_string(status.messages) + '\n';
    }
    output->write(lines);
}

void PlainView::end(const monitoring::Status &status) {
    output->write(monitoring::summaryText(status, ""));
}

} // namespace analyser
