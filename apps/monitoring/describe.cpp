#include "monitoring/describe.h"

#include <algorithm>

#include "common/Text.h"
#include "common/oneLine.h"

namespace monitoring {

namespace {

using Cause = Condition::Cause;

std::string soFar(std::uint64_t amount) {
    return " (" + std::to_string(amount) + " so far)";
}

std::string declaredBy(const Condition &condition) {
    return text::counted(static_cast<std::uint64_t>(std::max(condition.declaredChannels, 0)), "channel");
}

std::string ofStream(const Condition &condition, const SessionSettings &settings) {
    StreamSettings stream;
    for (const auto &candidate : settings.streams) {
        stream = candidate.mac == condition.stream ? candidate : stream;
    }
    switch (condition.cause) {
    case Cause::wrongChannelAmount:
        return "its frames are refused, they declare " + declaredBy(condition) + " where up to " +
               std::to_string(stream.channels) + " are configured" + soFar(condition.amount);
    case Cause::wrongDataLength:
        return "its frames are refused, their data length is not that of " + std::to_string(stream.samplesPerChannel) +
               " samples of 16 bits for each of " + declaredBy(condition) + soFar(condition.amount);
    case Cause::incompleteFrames:
        return "its frames are refused, they end before their samples do" + soFar(condition.amount);
    case Cause::channelAbsent:
        return "its frames hold " + declaredBy(condition) + " only";
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
                       ", dropped by this machine: " + std::to_string(status.adapter.kernelDrops) + '\n';
    for (const auto &entry : status.analyses) {
        text += linePrefix + entry.analysis->name() + ": " + text::counted(entry.results, "result") + '\n';
    }
    return text;
}

} // namespace monitoring
