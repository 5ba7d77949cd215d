#include "monitoring/Health.h"

#include <algorithm>

namespace monitoring {

namespace {

using Cause = Condition::Cause;

std::optional<Condition> adapterCondition(const Status &status) {
    switch (status.adapter.link) {
    case AdapterLink::State::gone:
        return Condition{Cause::adapterGone};
    case AdapterLink::State::down:
        return Condition{Cause::adapterDown};
    case AdapterLink::State::noLink:
        return Condition{Cause::noLink};
    case AdapterLink::State::up:
    case AdapterLink::State::unknown:
        break;
    }
    if (!status.adapter.endReason.empty()) {
        Condition condition{Cause::captureEnded};
        condition.reason = status.adapter.endReason;
        return condition;
    }
    return std::nullopt;
}

Condition conditionOf(const StreamStatus &stream, Cause cause, std::uint64_t amount = 0) {
    Condition condition{cause, stream.key};
    condition.amount = amount;
    condition.declared = stream.declared;
    return condition;
}

} // namespace

std::vector<Condition> Health::examine(const Status &status) {
    std::vector<Condition> conditions;
    if (const auto ofAdapter = adapterCondition(status)) {
        conditions.push_back(*ofAdapter);
    } else {
        for (const auto &stream : status.streams) {
            const auto ofStream = streamConditions(stream, status);
            conditions.insert(conditions.end(), ofStream.begin(), ofStream.end());
        }
    }
    latest = status.streams;
    return conditions;
}

std::vector<Condition> Health::streamConditions(const StreamStatus &stream, const Status &status) {
    // The internal clock makes results without any frame.
    const bool unseen = !stream.seen && status.seconds >= patience;
    std::vector<Condition> conditions;
    for (const auto &entry : status.analyses) {
        const Analysis::Channel &channel = entry.analysis->channel();
        if (channel.stream != stream.key || (entry.state != AnalysisStatus::State::silent && !unseen)) {
            continue;
        }
        const Condition cause = silenceOf(stream, channel.number);
        auto known = std::find_if(conditions.begin(), conditions.end(),
                                  [&](const Condition &other) { return other.cause == cause.cause; });
        if (known == conditions.end()) {
            known = conditions.insert(conditions.end(), cause);
        }
        // The analyses of a channel are silent for the same reason, which is said once.
        auto &channels = known->channels;
        if (std::find(channels.begin(), channels.end(), channel.number) == channels.end()) {
            channels.push_back(channel.number);
        }
    }
    // The internal clock makes results of no data, and of many frames some may be refused.
    if (const auto refusal = refusalOf(stream)) {
        remember(*refusal, status.seconds);
    }
    for (const Loss &loss : losses) {
        if (conditions.empty() && loss.condition.stream == stream.key && status.seconds < loss.seconds + remembrance) {
            conditions.push_back(loss.condition);
        }
    }
    return conditions;
}

/// One of each stream, the newest.
void Health::remember(const Condition &condition, double seconds) {
    losses.erase(std::remove_if(losses.begin(), losses.end(),
                                [&](const Loss &loss) { return loss.condition.stream == condition.stream; }),
                 losses.end());
    losses.push_back({condition, seconds});
}

/// Nothing while the stream's frames are taken.
std::optional<Condition> Health::refusalOf(const StreamStatus &stream) const {
    const StreamStatus earlier = before(stream);
    for (const auto &[amount, cause] : {std::pair{&StreamStatus::refusedFormat, Cause::wrongFormat},
                                        {&StreamStatus::refusedSampleRate, Cause::wrongSampleRate},
                                        {&StreamStatus::refusedChannelAmount, Cause::wrongChannelAmount},
                                        {&StreamStatus::refusedDataLength, Cause::wrongDataLength},
                                        {&StreamStatus::refusedIncomplete, Cause::incompleteFrames}}) {
        if (stream.*amount > earlier.*amount) {
            return conditionOf(stream, cause, stream.*amount);
        }
    }
    return std::nullopt;
}

Condition Health::silenceOf(const StreamStatus &stream, unsigned channel) const {
    if (const auto refusal = refusalOf(stream)) {
        return *refusal;
    }
    if (stream.declared.channels > 0 && channel >= static_cast<unsigned>(stream.declared.channels)) {
        return conditionOf(stream, Cause::channelAbsent);
    }
    if (stream.gaps > before(stream).gaps) {
        return conditionOf(stream, Cause::framesLost, stream.gaps);
    }
    if (stream.taken > before(stream).taken) {
        return conditionOf(stream, Cause::noResults);
    }
    return conditionOf(stream, stream.seen ? Cause::streamEnded : Cause::streamUnseen);
}

StreamStatus Health::before(const StreamStatus &stream) const {
    const auto found =
        std::find_if(latest.begin(), latest.end(), [&](const auto &other) { return other.key == stream.key; });
    return found == latest.end() ? StreamStatus() : *found;
}

} // namespace monitoring
