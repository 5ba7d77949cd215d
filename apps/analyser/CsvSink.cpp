#include "analyser/CsvSink.h"

#include <algorithm>

#include <sonvex/IVectorData.h>
#include <sonvex/version.h>

#include "analyser/Levels.h"
#include "analyser/Output.h"
#include "analyser/Text.h"
#include "common/oneLine.h"

namespace analyser {

CsvSink::CsvSink(Output &newOutput, const MonitorOptions &newOptions) : ResultSink(newOutput), options(newOptions) {}

void CsvSink::begin(const std::vector<Analysis> &analyses) {
    std::string header =
        "# sonvex-analyser " + qo::sonvexLib::getVersion() + "\n# device: " + common::oneLine(options.device) + '\n';
    header += "# started: " + timeText() + '\n';
    for (const auto &stream : options.streams) {
        header += "# stream: " + stream.mac + ", " + std::to_string(stream.channels) + " channels, " +
                  std::to_string(stream.samplesPerChannel) + " samples per channel in a packet\n";
    }
    for (const auto &analysis : analyses) {
        const AnalysisOptions &settings = analysis.options;
        header += "# analysis: " + settings.type() + ", " + analysis.name + ", stream " + settings.mac + ", channel " +
                  std::to_string(settings.channel) + ", amount " + std::to_string(settings.amount) + " samples";
        if (settings.kind == AnalysisKind::spectrum) {
            header += ", order " + std::to_string(settings.order) + ", bin width " + text::number(settings.binWidth()) +
                      " Hz, averaging " + (settings.averaging ? settings.averaging->toString() : "none");
        }
        header += ", clock " + settings.clock.toString() + '\n';
    }
    header += "# buffer: " + std::to_string(options.bufferSize) + " samples\n";
    if (options.reference) {
        header += "# reference: 0 dBFS is " + text::number(*options.reference) + " dB SPL (not in the values)\n";
    }
    const std::string limits = describeLimits(options.analyses, options.bufferSize);
    header += limits.empty() ? "" : "# limits: " + limits + '\n';
    header += "# units: waveform: index in samples at 48000 Hz from the first of the result, value at a full scale of "
              "+-1.0; spectrum: index in bins, value as power through a Hann window, 1/3 for a sine at full scale on a "
              "bin; levels: index 0 to 6 for";
    const char *separator = " ";
    for (const LevelName &name : levelNames) {
        header += separator + std::string(name.library);
        separator = ", ";
    }
    header += ", value in dB relative to a mean square of 1.0\ntype,name,stream,channel,sequence,index,value\n";
    output.write(header);
}

void CsvSink::result(const Result &result) {
    const auto &analysis = result.analysis;
    const bool isLevel = analysis.options.kind == AnalysisKind::levels;
    const std::string start = analysis.options.type() + ',' + analysis.name + ',' + analysis.options.mac + ',' +
                              std::to_string(analysis.options.channel) + ',' + std::to_string(result.sequence) + ',';
    const auto x = result.data.getX();
    const auto y = result.data.getY();
    std::string rows;
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
        rows += start + text::number(isLevel ? static_cast<double>(i) : x[i]) + ',' + text::number(y[i]) + '\n';
    }
    output.write(rows);
}

void CsvSink::message(const sonvex::imessages::IBaseMessage &message) {
    output.write("# message: " + text::describe(message) + '\n');
}

void CsvSink::summary(const Progress &progress) {
    output.write(summaryText(progress, "# "));
}

} // namespace analyser
