#include "analyser/CsvSink.h"

#include <algorithm>

#include <sonvex/IVectorData.h>
#include <sonvex/version.h>

#include "analyser/Output.h"
#include "analyser/Text.h"
#include "common/oneLine.h"

namespace analyser {

CsvSink::CsvSink(Output &newOutput, const MonitorOptions &newOptions) : ResultSink(newOutput), options(newOptions) {}

void CsvSink::begin(const std::vector<Analysis> &analyses) {
    std::string header =
        "# sonvex-analyser " + qo::sonvexLib::getVersion() + "\n# device: " + common::oneLine(options.device) + '\n';
    for (const auto &stream : options.streams) {
        header += "# stream: " + stream.mac + ", " + std::to_string(stream.channels) + " channels, " +
                  std::to_string(stream.samplesPerChannel) + " samples per channel in a packet\n";
    }
    for (const auto &analysis : analyses) {
        header += "# analysis: " + analysis.type + ", " + analysis.name + ", stream " + analysis.stream + ", channel " +
                  std::to_string(analysis.channel) + ", amount " + std::to_string(analysis.amount) + " samples\n";
    }
    header += "# clock: " + options.clock.toString() + "\n# buffer: " + std::to_string(options.bufferSize) +
              " samples\n# units: index in samples at 48000 Hz from the first of the result, value at a full scale of "
              "+-1.0\ntype,name,stream,channel,sequence,index,value\n";
    output.write(header);
}

void CsvSink::result(const Result &result) {
    const auto &analysis = result.analysis;
    const std::string start = analysis.type + ',' + analysis.name + ',' + analysis.stream + ',' +
                              std::to_string(analysis.channel) + ',' + std::to_string(result.sequence) + ',';
    const auto x = result.data.getX();
    const auto y = result.data.getY();
    std::string rows;
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
        rows += start + text::number(x[i]) + ',' + text::number(y[i]) + '\n';
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
