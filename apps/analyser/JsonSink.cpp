#include "analyser/JsonSink.h"

#include <cmath>

#include <sonvex/IChannelAmountChanged.h>
#include <sonvex/IStatusMessage.h>
#include <sonvex/IVectorData.h>
#include <sonvex/version.h>

#include "analyser/Levels.h"
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

const char *unitOf(AnalysisKind kind) {
    switch (kind) {
    case AnalysisKind::spectrum:
        return "power through a Hann window, 1/3 for a sine of amplitude 1.0 on a bin";
    case AnalysisKind::levels:
        return "dB relative to a mean square of 1.0";
    case AnalysisKind::waveform:
        break;
    }
    return "full scale of +-1.0";
}

} // namespace

void JsonSink::begin(const std::vector<Analysis> &analyses) {
    line = "{\"type\":\"settings\",\"version\":" + text::quoted(qo::sonvexLib::getVersion()) +
           ",\"started\":" + text::quoted(timeText()) + ",\"device\":" + text::quoted(options.device) +
           ",\"sampleRate\":" + text::number(sampleRate) + ",\"buffer\":" + std::to_string(options.bufferSize) +
           ",\"reference\":" + (options.reference ? text::number(*options.reference) : "null") +
           ",\"limits\":" + text::quoted(describeLimits(options.analyses, options.bufferSize)) + ",\"analyses\":[";
    const char *separator = "";
    for (const Analysis &analysis : analyses) {
        const AnalysisOptions &settings = analysis.options;
        const bool isSpectrum = settings.kind == AnalysisKind::spectrum;
        line += separator + std::string("{\"name\":") + text::quoted(analysis.name) +
                ",\"kind\":" + text::quoted(settings.type()) + ",\"stream\":" + text::quoted(settings.mac) +
                ",\"channel\":" + std::to_string(settings.channel) + ",\"amount\":" + std::to_string(settings.amount) +
                ",\"order\":" + (isSpectrum ? std::to_string(settings.order) : "null") +
                ",\"binWidth\":" + (isSpectrum ? text::number(settings.binWidth()) : "null") +
                ",\"averaging\":" + (settings.averaging ? text::quoted(settings.averaging->toString()) : "null") +
                ",\"clock\":" + text::quoted(settings.clock.toString()) +
                ",\"unit\":" + text::quoted(unitOf(settings.kind)) + '}';
        separator = ",";
    }
    output.write(line + "]}\n");
}

void JsonSink::result(const Result &result) {
    const AnalysisOptions &settings = result.analysis.options;
    line = "{\"type\":" + text::quoted(settings.type()) + ",\"name\":" + text::quoted(result.analysis.name) +
           ",\"stream\":" + text::quoted(settings.mac) + ",\"channel\":" + std::to_string(settings.channel) +
           ",\"sequence\":" + std::to_string(result.sequence);
    if (settings.kind == AnalysisKind::levels) {
        const char *separator = ",\"names\":[";
        for (const LevelName &name : levelNames) {
            line += separator + text::quoted(name.library);
            separator = ",";
        }
        line += ']';
    } else {
        if (settings.kind == AnalysisKind::spectrum) {
            line +=
                ",\"order\":" + std::to_string(settings.order) + ",\"binWidth\":" + text::number(settings.binWidth());
        }
        line += ",\"x\":";
        appendNumbers(line, result.data.getX());
    }
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
