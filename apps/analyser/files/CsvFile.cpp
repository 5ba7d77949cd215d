#include "analyser/files/CsvFile.h"

#include <algorithm>

#include <sonvex/version.h>

#include "common/Text.h"
#include "common/oneLine.h"
#include "monitoring/analyses/AnalysisKind.h"
#include "monitoring/describe.h"
#include "monitoring/meters/SoundLevelMeter.h"

namespace analyser {

void CsvFile::begin() {
    std::string header =
        "# sonvex-analyser " + qo::sonvexLib::getVersion() + "\n# device: " + common::oneLine(settings.device) + '\n';
    header += "# started: " + timeText(std::chrono::system_clock::now()) + '\n';
    for (const auto &stream : settings.streams) {
        header += "# stream: " + stream.key + ", " + stream.toString() + '\n';
    }
    for (const auto &analysis : settings.analyses) {
        header += std::string("# analysis: ") + analysis->kind().name + ", " + analysis->name() + ", stream " +
                  analysis->channel().stream + ", channel " + std::to_string(analysis->channel().number) + ", amount " +
                  std::to_string(analysis->amount()) + " samples";
        for (const auto &setting : analysis->settings()) {
            header += ", " + setting.label + ' ' + setting.value + setting.physicalUnit;
        }
        header += ", clock " + analysis->clock().toString() + ", value in " + analysis->unit() + '\n';
    }
    header += "# buffer: " + std::to_string(settings.bufferSize) + " samples\n";
    if (settings.reference) {
        header += "# reference: 0 dBFS is " + text::number(*settings.reference) + " dB SPL (not in the values)\n";
    }
    const std::string limits = monitoring::describeLimits(settings.analyses, settings.bufferSize);
    header += limits.empty() ? "" : "# limits: " + limits + '\n';
    header += "# index: of a waveform in samples from the first of the result, of a spectrum in bins, of "
              "levels 0 to 6 for";
    const char *separator = " ";
    for (const monitoring::LevelName &name : monitoring::levelNames) {
        header += separator + std::string(name.library);
        separator = ", ";
    }
    header += "\ntype,name,stream,channel,sequence,index,value,time,"
              "endSample,behindGap\n";
    write(header);
}

void CsvFile::result(const monitoring::Result &result) {
    const monitoring::Analysis &analysis = *result.analysis;
    const bool isCurve = analysis.valueNames().empty();
    const std::string start = analysis.kind().name + (',' + analysis.name()) + ',' + analysis.channel().stream + ',' +
                              std::to_string(analysis.channel().number) + ',' + std::to_string(result.sequence) + ',';
    const std::string end = ',' + (result.endTime ? timeText(*result.endTime) : "") + ',' +
                            std::to_string(result.endSample) + ',' + (result.behindGap ? '1' : '0') + '\n';
    std::string rows;
    for (std::size_t i = 0; i < std::min(result.x.size(), result.y.size()); ++i) {
        rows += start + text::number(isCurve ? result.x[i] : static_cast<double>(i)) + ',' + text::number(result.y[i]) +
                end;
    }
    write(rows);
}

void CsvFile::message(const monitoring::Message &message) {
    write("# message: " + monitoring::describe(message) + '\n');
}

void CsvFile::leftOut(const monitoring::LeftOut &amount) {
    write("# left out: " + monitoring::describe(amount) + '\n');
}

void CsvFile::end(const monitoring::Status &status) {
    write(monitoring::summaryText(status, "# "));
}

} // namespace analyser
