#include "analyser/JsonSink.h"

#include <cmath>

#include <sonvex/IChannelAmountChanged.h>
#include <sonvex/IStatusMessage.h>
#include <sonvex/IVectorData.h>

#include "analyser/Output.h"
#include "analyser/Text.h"

namespace analyser {

namespace {

void appendNumbers(std::string &line, const std::vector<double> &values) {
    const char *separator = "[";
    for (const double value : values) {
        line += separator;
        line += std::isfinite(value) ? text::number(value) : "null";
        separator = ",";
    }
    line += values.empty() ? "[]" : "]";
}

} // namespace

void JsonSink::result(const Result &result) {
    const auto &analysis = result.analysis;
    line = "{\"type\":" + text::quoted(analysis.type) + ",\"name\":" + text::quoted(analysis.name) +
           ",\"stream\":" + text::quoted(analysis.stream) + ",\"channel\":" + std::to_string(analysis.channel) +
           ",\"sequence\":" + std::to_string(result.sequence) + ",\"x\":";
    appendNumbers(line, result.data.getX());
    line += ",\"y\":";
    appendNumbers(line, result.data.getY());
    line += "}\n";
    output.write(line);
}

void JsonSink::message(const sonvex::imessages::IBaseMessage &message) {
    const auto *change = dynamic_cast<const sonvex::imessages::IChannelAmountChanged *>(&message);
    const auto *status = dynamic_cast<const sonvex::imessages::IStatusMessage *>(&message);
    const auto ofChange = [&](auto getter) { return change ? std::to_string((change->*getter)()) : "null"; };
    using Change = sonvex::imessages::IChannelAmountChanged;
    output.write("{\"type\":\"message\",\"name\":" + text::quoted(message.getName()) + ",\"id\":" +
                 text::quoted(message.getMessageId()) + ",\"messageType\":" + text::quoted(message.getMessageType()) +
                 ",\"details\":" + text::quoted(message.getMessageDetails()) +
                 ",\"configured\":" + ofChange(&Change::getConfiguredChannelAmount) + ",\"before\":" +
                 ofChange(&Change::getChannelAmountBefore) + ",\"after\":" + ofChange(&Change::getChannelAmountAfter) +
                 ",\"text\":" + (status ? text::quoted(status->getMessage()) : "null") + "}\n");
}

void JsonSink::summary(const Progress &progress) {
    line = "{\"type\":\"summary\",\"seconds\":" + text::number(progress.seconds) + ",\"analyses\":[";
    const char *separator = "";
    for (const auto &entry : progress.analyses) {
        line += separator;
        line += "{\"name\":" + text::quoted(entry.name) + ",\"stream\":" + text::quoted(entry.stream) +
                ",\"channel\":" + std::to_string(entry.channel) + ",\"results\":" + std::to_string(entry.results) + '}';
        separator = ",";
    }
    line += "],\"messages\":" + std::to_string(progress.messages) +
            ",\"packetsMissed\":" + std::to_string(progress.packetsMissed) +
            ",\"framesRefused\":{\"channelAmount\":" + std::to_string(progress.refused.channelAmount) +
            ",\"dataLength\":" + std::to_string(progress.refused.dataLength) + "}}\n";
    output.write(line);
}

} // namespace analyser
