#include "analyser/PlainView.h"

#include <algorithm>

#include <sonvex/IVectorData.h>

#include "analyser/Output.h"
#include "analyser/Text.h"

namespace analyser {

void PlainView::result(const Result &result) {
    double &peak = peaks[result.analysis.name];
    peak = std::max(peak, peakOf(result.data.getY()));
}

void PlainView::message(const sonvex::imessages::IBaseMessage &message) {
    output.write("message: " + text::describe(message) + '\n');
}

void PlainView::progress(const Progress &progress) {
    std::string lines;
    for (const auto &entry : progress.analyses) {
        lines += text::fixed(progress.seconds, 1) + " s  " + entry.name + "  " + entry.state + "  " +
                 text::fixed(entry.resultsPerSecond, 1) + " results/s  peak " + text::fixed(peaks[entry.name], 4) +
                 "  messages " + std::to_string(progress.messages) + '\n';
    }
    peaks.clear();
    output.write(lines);
}

void PlainView::summary(const Progress &progress) {
    output.write(summaryText(progress, ""));
}

} // namespace analyser
