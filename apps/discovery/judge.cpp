#include "discovery/judge.h"

#include "common/Text.h"
#include "common/streamArgument.h"

namespace discovery {

namespace {

constexpr double usualRate = 48000.0;
constexpr unsigned mostChannels = 255;
constexpr unsigned mostSamples = 32767;

/// Of a stream that carries no samples in AAF.
std::string obstacleOfKind(const StreamFormat &format) {
    switch (format.kind) {
    case StreamFormat::Kind::clockReference:
        return "it is a clock reference and carries no audio";
    case StreamFormat::Kind::iec61883:
        return "it comes in the older form IEC 61883, with a label before each sample; only AAF can be monitored";
    default:
        return "it is no AVTP audio (AAF), but " + format.name();
    }
}

std::string obstacleOfFormat(const StreamFormat &format) {
    if (format.kind != StreamFormat::Kind::aaf) {
        return obstacleOfKind(format);
    }
    if (format.samples() == nullptr) {
        return "its samples have the format " + format.name().substr(4) +
               "; int16, int24, int32 and float32 can be monitored";
    }
    if (*format.channels == 0) {
        return "its frames say that they hold no channel";
    }
    if (*format.channels > mostChannels) {
        return "it has " + std::to_string(*format.channels) + " channels, more than " + std::to_string(mostChannels);
    }
    return format.rate ? "" : "its frames name no sample rate";
}

std::string obstacleOfLength(const WireStream &stream) {
    const unsigned block = *stream.format.channels * stream.format.samples()->bytes;
    if (!stream.samples) {
        return "its data of " + text::counted(*stream.dataLength, "byte") + " leave a rest where " +
               text::counted(*stream.format.channels, "channel") + " take " + std::to_string(block) + " a sample";
    }
    if (stream.samples->greatest == 0) {
        return "its frames carry no samples";
    }
    if (stream.samples->greatest > mostSamples) {
        return "its packets hold more than " + std::to_string(mostSamples) + " samples of each channel";
    }
    return stream.framesCutShort == stream.frames ? "its frames end before the samples that they announce" : "";
}

} // namespace

void judge(WireStream &stream, bool sharesSource) {
    stream.obstacle = obstacleOfFormat(stream.format);
    if (stream.obstacle.empty()) {
        stream.obstacle = obstacleOfLength(stream);
    }
    if (stream.obstacle.empty() && !stream.id && sharesSource) {
        stream.obstacle = "its frames mark their stream ID as not valid, and its source sends other streams, too";
    }
    if (!stream.obstacle.empty()) {
        return;
    }
    const StreamFormat &format = stream.format;
    stream.hasSoundLevels = format.rate == usualRate;
    const bool isSteady = stream.samples->least == stream.samples->greatest;
    stream.argument = common::streamArgument(stream.id ? common::toString(*stream.id) : common::toString(stream.source),
                                             *format.channels, isSteady ? stream.samples->greatest : 0,
                                             *format.samples(), static_cast<unsigned>(*format.rate));
}

} // namespace discovery
