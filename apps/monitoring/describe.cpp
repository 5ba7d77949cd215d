#include "monitoring/describe.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "common/Text.h"
#include "common/oneLine.h"
#include "common/streamArgument.h"

namespace monitoring {

namespace {

using Cause = Condition::Cause;

std::string soFar(std::uint64_t amount) {
    return " (" + std::to_string(amount) + " so far)";
}

std::string channelsOf(const Declaration &declared) {
    return text::counted(static_cast<std::uint64_t>(std::max(declared.channels, 0)), "channel");
}

const common::AafFormat *formatOf(const Declaration &declared) {
    return common::find(common::aafFormats, &common::AafFormat::code, declared.format);
}

/// Of each channel; nothing for a length that leaves a rest.
std::optional<unsigned> samplesOf(const Declaration &declared) {
    const auto *format = formatOf(declared);
    const int block = format != nullptr ? declared.channels * static_cast<int>(format->bytes) : 0;
    const bool fits = block > 0 && declared.dataLength > 0 && declared.dataLength % block == 0;
    return fits ? std::optional(static_cast<unsigned>(declared.dataLength / block)) : std::nullopt;
}

/// All that the frames say, and the option that follows them where it can.
std::string allOf(const Declaration &declared, const std::string &stream) {
    const auto *format = formatOf(declared);
    const auto samples = samplesOf(declared);
    std::string text = "they declare " +
                       (format != nullptr ? std::string(format->name) : "format " + std::to_string(declared.format)) +
                       ", " + channelsOf(declared) + ", " +
                       (samples ? text::counted(*samples, "sample") : text::counted(declared.dataLength, "byte"));
    text += declared.sampleRate > 0 ? ", " + std::to_string(declared.sampleRate) + " Hz" : "";
    if (format != nullptr && samples && declared.sampleRate > 0) {
        text += ": --stream " + common::streamArgument(stream, static_cast<unsigned>(declared.channels), *samples,
                                                       *format, static_cast<unsigned>(declared.sampleRate));
    }
    return text;
}

std::string lengthOf(const StreamSettings &stream) {
    return (stream.samplesPerChannel > 0 ? text::counted(stream.samplesPerChannel, "sample") : "whole samples") +
           " of " +
           (stream.format != nullptr
                ? std::to_string(8 * stream.format->bytes) + " bits (" + std::string(stream.format->name) + ')'
                : "16 bits");
}

std::string ofStream(const Condition &condition, const SessionSettings &settings) {
    StreamSettings stream;
    for (const auto &candidate : settings.streams) {
        stream = candidate.key == condition.stream ? candidate : stream;
    }
    const Declaration &declared = condition.declared;
    const std::string refused = "its frames are refused, ";
    const std::string all = soFar(condition.amount) + "; " + allOf(declared, condition.stream);
    switch (condition.cause) {
    case Cause::wrongChannelAmount:
        return refused + "they declare " + channelsOf(declared) + " where up to " + std::to_string(stream.channels) +
               " are configured" + all;
    case Cause::wrongDataLength:
        return refused + "their data length is not that of " + lengthOf(stream) + " for each of " +
               channelsOf(declared) + all;
    case Cause::wrongFormat:
        return refused + "their samples are no " +
               (stream.format != nullptr ? std::string(stream.format->name) : "int16") + all;
    case Cause::wrongSampleRate:
        return refused + "their rate is not " + std::to_string(stream.sampleRate) + " Hz" + all;
    case Cause::incompleteFrames:
        return refused + "they end before their samples do" + soFar(condition.amount);
    case Cause::channelAbsent:
        return "its frames hold " + channelsOf(declared) + " only";
    case Cause::framesLost:
        return "packets are missed, and the frame that shows a gap is dropped" + soFar(condition.amount);
    case Cause::noResults:
        return "frames arrive, but no result is made of them";
    case Cause::streamEnded:
        return "no more frames arrive";
    default:
        return "no frame of this stream has arrived so far";
    }
}

/// Empty while it is in order.
std::string troubleOf(const sonvex::StreamClock &clock) {
    constexpr double wrongOffset = 100.0; // ppm
    // A machine that stalls now and then sees arrivals hundreds of ppm off for some seconds.
    constexpr double wrongArrivals = 1000.0;
    std::string text;
    const auto note = [&](bool applies, const std::string &part) {
        text += !applies ? "" : (text.empty() ? "" : ", ") + part;
    };
    const auto offset = [](double ppm) { return (ppm < 0 ? "" : "+") + text::fixed(ppm, 0) + " ppm"; };
    note(clock.timestampsUncertain > 0, text::counted(clock.timestampsUncertain, "frame") + " of uncertain time");
    note(clock.restarts > 0, text::counted(clock.restarts, "restart"));
    note(std::abs(clock.presentationOffset) > wrongOffset, "its rate is " + offset(clock.presentationOffset) + " off");
    note(std::abs(clock.arrivalOffset) > wrongArrivals, "frames arrive " + offset(clock.arrivalOffset) + " off");
    return text;
}

} // namespace

std::string describe(AnalysisStatus::State state) {
    using State = AnalysisStatus::State;
    return state == State::waiting ? "waiting" : state == State::silent ? "silent" : "running";
}

std::string describe(const Message &message) {
    std::string result = message.type + ' ' + message.name + ' ' + message.id;
    if (message.change) {
        result += ": " + std::to_string(message.change->after) + " channels after " +
                  std::to_string(message.change->before) + ", configured " + std::to_string(message.change->configured);
    } else if (message.text) {
        result += ": " + *message.text;
    }
    return common::oneLine(result);
}

std::string describe(const LeftOut &amount) {
    return text::counted(amount.results, "result") +
           (amount.messages > 0 ? " and " + text::counted(amount.messages, "message") : "");
}

std::string describe(const Condition &condition, const SessionSettings &settings) {
    const std::string adapter = "the adapter '" + settings.device + "' ";
    switch (condition.cause) {
    case Cause::adapterGone:
        return adapter + "is gone";
    case Cause::adapterDown:
        return adapter + "is down ('sudo ip link set " + settings.device + " up' brings it up)";
    case Cause::noLink:
        return adapter + "has no link";
    case Cause::captureEnded:
        return "the capture on '" + settings.device + "' has ended by itself: " + condition.reason;
    default:
        break;
    }
    if (condition.channels.empty()) {
        return "results from " + condition.stream + " lack samples: " + ofStream(condition, settings);
    }
    std::string channels;
    for (const unsigned channel : condition.channels) {
        channels += (channels.empty() ? "" : ", ") + std::to_string(channel);
    }
    return "silence from " + condition.stream + " channel " + channels + ": " + ofStream(condition, settings);
}

std::string describeHealth(const Status &status, const SessionSettings &settings) {
    std::string result;
    for (const Condition &condition : status.conditions) {
        result += (result.empty() ? "" : "; ") + describe(condition, settings);
    }
    return result.empty() ? describeLimits(settings.analyses, settings.bufferSize) : result;
}

std::string describeClocks(const Status &status) {
    std::string text;
    std::size_t wrong = 0;
    for (const StreamStatus &stream : status.streams) {
        const std::string trouble = troubleOf(stream.clock);
        wrong += trouble.empty() ? 0 : 1;
        if (!trouble.empty() && wrong == 1) {
            text = "the clock of " + stream.key + ": " + trouble;
        }
    }
    return text + (wrong > 1 ? "; trouble with " + text::counted(wrong - 1, "more clock") : "");
}

std::uint64_t packetsMissed(const Status &status) {
    std::uint64_t all = 0;
    for (const StreamStatus &stream : status.streams) {
        all += stream.gaps;
    }
    return all;
}

StreamStatus refusals(const Status &status) {
    StreamStatus all;
    for (const StreamStatus &stream : status.streams) {
        all.refusedChannelAmount += stream.refusedChannelAmount;
        all.refusedDataLength += stream.refusedDataLength;
        all.refusedIncomplete += stream.refusedIncomplete;
        all.refusedFormat += stream.refusedFormat;
        all.refusedSampleRate += stream.refusedSampleRate;
        all.nonFiniteSamples += stream.nonFiniteSamples;
    }
    return all;
}

std::string summaryText(const Status &status, const std::string &linePrefix) {
    const StreamStatus refused = refusals(status);
    std::string text = linePrefix + "summary: " + text::fixed(status.seconds, 3) + " s, " +
                       text::counted(status.messages, "message") +
                       ", packets missed: " + std::to_string(packetsMissed(status)) +
                       ", frames refused for the channel amount: " + std::to_string(refused.refusedChannelAmount) +
                       ", for the data length: " + std::to_string(refused.refusedDataLength) +
                       ", as incomplete: " + std::to_string(refused.refusedIncomplete) +
                       ", for the format: " + std::to_string(refused.refusedFormat) +
                       ", for the sample rate: " + std::to_string(refused.refusedSampleRate) +
                       ", dropped by this machine: " + std::to_string(status.adapter.kernelDrops);
    if (refused.nonFiniteSamples > 0) {
        text += ", samples that are no numbers and were taken as 0: " + std::to_string(refused.nonFiniteSamples);
    }
    text += '\n';
    for (const auto &entry : status.analyses) {
        text += linePrefix + entry.analysis->name() + ": " + text::counted(entry.results, "result") + '\n';
    }
    return text;
}

} // namespace monitoring
