#include "analyser/PlainView.h"

#include "analyser/Output.h"
#include "analyser/Text.h"

namespace analyser {

void PlainView::begin(const std::vector<Analysis> &analyses) {
    panels = makePanels(analyses, options);
}

void PlainView::result(const Result &result) {
    panels.at(result.analysis.name)->take(result.data);
}

void PlainView::message(const sonvex::imessages::IBaseMessage &message) {
    output.write("message: " + text::describe(message) + '\n');
}

void PlainView::progress(const Progress &progress) {
    std::string lines;
    for (const auto &entry : progress.analyses) {
        lines += text::fixed(progress.seconds, 1) + " s  " + entry.name + "  " + entry.state + "  " +
                 text::fixed(entry.resultsPerSecond, 1) + " results/s  " + panels.at(entry.name)->takeHeadline() +
                 "  messages " + std::to_string(progress.messages) + '\n';
    }
    output.write(lines);
}

void PlainView::summary(const Progress &progress) {
    output.write(summaryText(progress, ""));
}

} // namespace analyser
