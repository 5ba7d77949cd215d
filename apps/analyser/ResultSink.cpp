#include "analyser/ResultSink.h"

#include <QDateTime>

#include "analyser/Text.h"

namespace analyser {

ResultSink::ResultSink(Output &newOutput) : output(newOutput) {}

ResultSink::~ResultSink() = default;

std::string ResultSink::timeText() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toStdString();
}

std::string summaryText(const Progress &progress, const std::string &linePrefix) {
    const RefusedFrames refused = progress.refused;
    std::string text = linePrefix + "summary: " + text::fixed(progress.seconds, 3) + " s, " +
                       text::counted(progress.messages, "message") +
                       ", packets missed: " + std::to_string(progress.packetsMissed) +
                       ", frames refused for the channel amount: " + std::to_string(refused.channelAmount) +
                       ", for the data length: " + std::to_string(refused.dataLength) + '\n';
    for (const auto &entry : progress.analyses) {
        text += linePrefix + entry.name + ": " + text::counted(entry.results, "result") + '\n';
    }
    return text;
}

} // namespace analyser
