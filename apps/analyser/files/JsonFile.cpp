#include "analyser/files/JsonFile.h"

#include <cmath>

#include <sonvex/version.h>

#include "common/AafFormat.h"
#include "common/Text.h"
#include "monitoring/analyses/AnalysisKind.h"
#include "monitoring/describe.h"

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

/// The parts, separated and in brackets.
template <class Items, class Write>
std::string list(const Items &items, const Write &write) {
    std::string text = "[";
    const char *separator = "";
    for (const auto &item : items) {
        text += separator + write(item);
        separator = ",";
    }
    return text + ']';
}

std::string settingsOf(const monitoring::Analysis &analysis) {
    std::string text = "{\"name\":" + text::quoted(analysis.name()) +
                       ",\"kind\":" + text::quoted(analysis.kind().name) +
                       ",\"stream\":" + text::quoted(analysis.channel().stream) +
                       ",\"channel\":" + std::to_string(analysis.channel().number) +
                       ",\"sampleRate\":" + std::to_string(analysis.channel().sampleRate) +
                       ",\"amount\":" + std::to_string(analysis.amount());
    for (const auto &setting : analysis.settings()) {
        text +=
            ',' + text::quoted(setting.name) + ':' + (setting.isNumber ? setting.value : text::quoted(setting.value));
    }
    return text + ",\"clock\":" + text::quoted(analysis.clock().toString()) +
           ",\"unit\":" + text::quoted(analysis.unit()) + '}';
}

std::string refusalsOf(const monitoring::StreamStatus &stream) {
    return ",\"framesRefused\":{\"channelAmount\":" + std::to_string(stream.refusedChannelAmount) +
           ",\"dataLength\":" + std::to_string(stream.refusedDataLength) +
           ",\"incomplete\":" + std::to_string(stream.refusedIncomplete) +
           ",\"format\":" + std::to_string(stream.refusedFormat) +
           ",\"sampleRate\":" + std::to_string(stream.refusedSampleRate) + '}';
}

std::string finite(double value) {
    return std::isfinite(value) ? text::number(value) : "null";
}

std::string unlessNegative(int value) {
    return value >= 0 ? std::to_string(value) : "null";
}

std::string tagOf(const monitoring::StreamStatus &stream) {
    return stream.vlanId < 0 ? "null"
                             : "{\"id\":" + std::to_string(stream.vlanId) +
                                   ",\"priority\":" + std::to_string(stream.vlanPriority) + '}';
}

std::string declarationOf(const monitoring::Declaration &declared) {
    const auto *format = common::find(common::aafFormats, &common::AafFormat::code, declared.format);
    return "{\"format\":" + (format != nullptr ? text::quoted(format->name) : unlessNegative(declared.format)) +
           ",\"channels\":" + unlessNegative(declared.channels) +
           ",\"dataLength\":" + unlessNegative(declared.dataLength) +
           ",\"sampleRate\":" + unlessNegative(declared.sampleRate) + '}';
}

/// Distances in seconds, as those of the list of streams.
std::string clockOf(const sonvex::StreamClock &clock) {
    constexpr double second = 1e6; // microseconds
    return "{\"timestampsValid\":" + std::to_string(clock.timestampsValid) +
           ",\"timestampsUncertain\":" + std::to_string(clock.timestampsUncertain) +
           ",\"restarts\":" + std::to_string(clock.restarts) + ",\"timestampPpm\":" + finite(clock.presentationOffset) +
           ",\"arrivalPpm\":" + finite(clock.arrivalOffset) +
           ",\"arrivalDistance\":{\"least\":" + finite(clock.leastDistance / second) +
           ",\"mean\":" + finite(clock.meanDistance / second) +
           ",\"greatest\":" + finite(clock.greatestDistance / second) + "}}";
}

std::string settingsOf(const monitoring::StreamSettings &stream) {
    return "{\"stream\":" + text::quoted(stream.key) + ",\"channels\":" + std::to_string(stream.channels) +
           ",\"samplesPerPacket\":" +
           (stream.samplesPerChannel > 0 ? std::to_string(stream.samplesPerChannel) : "null") +
           ",\"format\":" + (stream.format != nullptr ? text::quoted(stream.format->name) : "null") +
           ",\"sampleRate\":" + std::to_string(stream.sampleRate) + '}';
}

std::string statusOf(const monitoring::StreamStatus &stream) {
    return "{\"stream\":" + text::quoted(stream.key) + ",\"framesTaken\":" + std::to_string(stream.taken) +
           ",\"gaps\":" + std::to_string(stream.gaps) + ",\"framesLost\":" + std::to_string(stream.lost) +
           ",\"framesRepeated\":" + std::to_string(stream.repeated) + refusalsOf(stream) +
           ",\"nonFiniteSamples\":" + std::to_string(stream.nonFiniteSamples) +
           ",\"streamId\":" + (stream.streamId.empty() ? "null" : text::quoted(stream.streamId)) +
           ",\"vlan\":" + tagOf(stream) + ",\"declared\":" + declarationOf(stream.declared) +
           ",\"clock\":" + clockOf(stream.clock) + '}';
}

/// Of all streams; null if they differ.
std::string commonRate(const std::vector<monitoring::StreamSettings> &streams) {
    for (const auto &stream : streams) {
        if (stream.sampleRate != streams.front().sampleRate) {
            return "null";
        }
    }
    return std::to_string(streams.empty() ? monitoring::usualRate : streams.front().sampleRate);
}

} // namespace

void JsonFile::begin() {
    write("{\"type\":\"settings\",\"version\":" + text::quoted(qo::sonvexLib::getVersion()) + ",\"started\":" +
          text::quoted(timeText(std::chrono::system_clock::now())) + ",\"device\":" + text::quoted(settings.device) +
          ",\"sampleRate\":" + commonRate(settings.streams) + ",\"buffer\":" + std::to_string(settings.bufferSize) +
          ",\"reference\":" + (settings.reference ? text::number(*settings.reference) : "null") +
          ",\"limits\":" + text::quoted(monitoring::describeLimits(settings.analyses, settings.bufferSize)) +
          ",\"streams\":" + list(settings.streams, [](const auto &stream) { return settingsOf(stream); }) +
          ",\"analyses\":" + list(settings.analyses, [](const auto &analysis) { return settingsOf(*analysis); }) +
          "}\n");
}

void JsonFile::result(const monitoring::Result &result) {
    const monitoring::Analysis &analysis = *result.analysis;
    line = "{\"type\":" + text::quoted(analysis.kind().name) + ",\"name\":" + text::quoted(analysis.name()) +
           ",\"stream\":" + text::quoted(analysis.channel().stream) +
           ",\"channel\":" + std::to_string(analysis.channel().number) +
           ",\"sequence\":" + std::to_string(result.sequence) +
           ",\"time\":" + (result.endTime ? text::quoted(timeText(*result.endTime)) : "null") +
           ",\"endSample\":" + std::to_string(result.endSample) +
           ",\"behindGap\":" + (result.behindGap ? "true" : "false");
    for (const auto &setting : analysis.settings()) {
        if (setting.isNumber) {
            line += ',' + text::quoted(setting.name) + ':' + setting.value;
        }
    }
    if (const auto names = analysis.valueNames(); names.empty()) {
        line += ",\"x\":";
        appendNumbers(line, result.x);
    } else {
        line += ",\"names\":" + list(names, [](const std::string &name) { return text::quoted(name); });
    }
    line += ",\"y\":";
    appendNumbers(line, result.y);
    line += "}\n";
    write(line);
}

void JsonFile::message(const monitoring::Message &message) {
    const auto &change = message.change;
    const auto ofChange = [&](auto amount) { return change ? std::to_string((*change).*amount) : "null"; };
    using Change = monitoring::Message::ChannelAmount;
    write("{\"type\":\"message\",\"name\":" + text::quoted(message.name) + ",\"id\":" + text::quoted(message.id) +
          ",\"messageType\":" + text::quoted(message.type) + ",\"details\":" + text::quoted(message.details) +
          ",\"configured\":" + ofChange(&Change::configured) + ",\"before\":" + ofChange(&Change::before) +
          ",\"after\":" + ofChange(&Change::after) +
          ",\"text\":" + (message.text ? text::quoted(*message.text) : "null") + "}\n");
}

void JsonFile::leftOut(const monitoring::LeftOut &amount) {
    write("{\"type\":\"leftOut\",\"results\":" + std::to_string(amount.results) +
          ",\"messages\":" + std::to_string(amount.messages) + "}\n");
}

void JsonFile::end(const monitoring::Status &status) {
    write("{\"type\":\"summary\",\"seconds\":" + text::number(status.seconds) + ",\"analyses\":" +
          list(status.analyses,
               [](const auto &entry) {
                   const monitoring::Analysis &analysis = *entry.analysis;
                   return "{\"name\":" + text::quoted(analysis.name()) +
                          ",\"stream\":" + text::quoted(analysis.channel().stream) +
                          ",\"channel\":" + std::to_string(analysis.channel().number) +
                          ",\"results\":" + std::to_string(entry.results) + '}';
               }) +
          ",\"messages\":" + std::to_string(status.messages) +
          ",\"packetsMissed\":" + std::to_string(monitoring::packetsMissed(status)) +
          refusalsOf(monitoring::refusals(status)) + ",\"streams\":" + list(status.streams, statusOf) +
          ",\"adapter\":{\"framesSeen\":" + std::to_string(status.adapter.seen) + ",\"framesOfNoStream\":" +
          std::to_string(status.adapter.ofNoStream) + ",\"kernelDrops\":" + std::to_string(status.adapter.kernelDrops) +
          ",\"endReason\":" + text::quoted(status.adapter.endReason) + "}}\n");
}

} // namespace analyser
