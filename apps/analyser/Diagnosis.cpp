#include "analyser/Diagnosis.h"

#include <algorithm>

#include "analyser/Text.h"

namespace analyser {

namespace {

RefusedFrames refusedOf(const std::string &stream, const LogFacts &facts) {
    const auto found = facts.refused.find(stream);
    return found == facts.refused.end() ? RefusedFrames() : found->second;
}

std::string declaredBy(const StreamOptions &stream, const Facts &facts) {
    const auto declared = facts.declaredChannels.find(stream.mac);
    return declared == facts.declaredChannels.end()
               ? "an unknown amount of channels"
               : text::counted(static_cast<std::uint64_t>(std::max(declared->second, 0)), "channel");
}

std::string soFar(std::uint64_t amount) {
    return " (" + std::to_string(amount) + " so far)";
}

} // namespace

Diagnosis::Diagnosis(const MonitorOptions &newOptions) : options(newOptions) {}

std::vector<Condition> Diagnosis::examine(const Facts &facts) {
    std::vector<Condition> conditions;
    if (const auto ofAdapter = adapterCondition(facts)) {
        conditions.push_back(*ofAdapter);
    } else {
        for (const auto &stream : options.streams) {
            const auto ofStream = streamConditions(stream, facts);
            conditions.insert(conditions.end(), ofStream.begin(), ofStream.end());
        }
    }
    before = facts.log;
    return conditions;
}

std::vector<Condition> Diagnosis::streamConditions(const StreamOptions &stream, const Facts &facts) const {
    // The internal clock makes results without any frame.
    const bool unseen = facts.declaredChannels.count(stream.mac) == 0 && facts.seconds >= patience;
    std::map<std::string, std::string> channels; // by what silences them
    std::map<std::string, std::string> texts;
    for (const auto &channel : facts.channels) {
        if (channel.stream == stream.mac && (channel.overdue || unseen)) {
            const Condition cause = silenceOf(stream, facts, channel.channel);
            auto &list = channels[cause.key];
            list += (list.empty() ? "" : ", ") + std::to_string(channel.channel);
            texts[cause.key] = cause.text;
        }
    }
    std::vector<Condition> conditions;
    for (const auto &[key, list] : channels) {
        std::string text = "silence from " + stream.mac + " channel " + list + ": " + texts[key];
        conditions.push_back({stream.mac + ' ' + key + ' ' + list, std::move(text)});
    }
    // The internal clock makes results of no data, and of many frames some may be refused.
    if (const auto refusal = refusalOf(stream, facts); refusal && conditions.empty()) {
        conditions.push_back(
            {stream.mac + ' ' + refusal->key, "results from " + stream.mac + " lack samples: " + refusal->text});
    }
    return conditions;
}

std::optional<Condition> Diagnosis::adapterCondition(const Facts &facts) const {
    const std::string adapter = "the adapter '" + options.device + "' ";
    switch (facts.adapterState) {
    case AdapterState::gone:
        return Condition{"gone", adapter + "is gone"};
    case AdapterState::down:
        return Condition{"down", adapter + "is down ('sudo ip link set " + options.device + " up' brings it up)"};
    case AdapterState::noLink:
        return Condition{"link", adapter + "has no link"};
    case AdapterState::up:
    case AdapterState::unknown:
        break;
    }
    if (facts.log.capturesEnded > 0) {
        return Condition{"ended", "the capture on '" + options.device + "' has ended by itself"};
    }
    return std::nullopt;
}

std::optional<Condition> Diagnosis::refusalOf(const StreamOptions &stream, const Facts &facts) const {
    const RefusedFrames now = refusedOf(stream.mac, facts.log);
    const RefusedFrames earlier = refusedOf(stream.mac, before);
    if (now.channelAmount > earlier.channelAmount) {
        return Condition{"channels", "its frames are refused, they declare " + declaredBy(stream, facts) +
                                         " where up to " + std::to_string(stream.channels) + " are configured" +
                                         soFar(now.channelAmount)};
    }
    if (now.dataLength > earlier.dataLength) {
        return Condition{"length", "its frames are refused, their data length is not that of " +
                                       std::to_string(stream.samplesPerChannel) + " samples of 16 bits for each of " +
                                       declaredBy(stream, facts) + soFar(now.dataLength)};
    }
    return std::nullopt;
}

Condition Diagnosis::silenceOf(const StreamOptions &stream, const Facts &facts, unsigned channel) const {
    if (const auto refusal = refusalOf(stream, facts)) {
        return *refusal;
    }
    const auto declared = facts.declaredChannels.find(stream.mac);
    const bool seen = declared != facts.declaredChannels.end();
    if (seen && declared->second > 0 && channel >= static_cast<unsigned>(declared->second)) {
        return {"absent", "its frames hold " + declaredBy(stream, facts) + " only"};
    }
    if (facts.log.packetsMissed > before.packetsMissed) {
        return {"missed",
                "packets are missed, and the frame that shows a gap is dropped" + soFar(facts.log.packetsMissed)};
    }
    if (seen) {
        return {"stopped", "no more frames arrive, as far as this program can know"};
    }
    return {"unseen", "no frame of this stream has arrived so far"};
}

} // namespace analyser
