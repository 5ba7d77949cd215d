#include "analyser/fitStreams.h"

#include <algorithm>

#include "common/Refusal.h"
#include "common/Text.h"

namespace analyser {

using discovery::Findings;
using discovery::WireStream;
using monitoring::StreamSettings;

namespace {

constexpr std::uint64_t enoughFrames = 10; // to know a stream by

bool isAudio(const WireStream &stream) {
    return stream.format.kind == discovery::StreamFormat::Kind::aaf;
}

std::string keyOf(const WireStream &stream) {
    return stream.id ? common::toString(*stream.id) : common::toString(stream.source);
}

/// The stream of this ID, or those of this address: of audio, if there are any.
std::vector<const WireStream *> matching(const std::string &key, const Findings &findings) {
    std::vector<const WireStream *> found;
    for (const WireStream &stream : findings.streams) {
        if (common::toString(stream.source) == key || (stream.id && common::toString(*stream.id) == key)) {
            found.push_back(&stream);
        }
    }
    if (std::any_of(found.begin(), found.end(), [](const auto *stream) { return isAudio(*stream); })) {
        found.erase(std::remove_if(found.begin(), found.end(), [](const auto *stream) { return !isAudio(*stream); }),
                    found.end());
    }
    return found;
}

std::string named(const std::vector<const WireStream *> &streams) {
    std::string text;
    for (const WireStream *stream : streams) {
        text += (text.empty() ? "" : ", ") + (stream->id ? common::toString(*stream->id) : "one without a valid ID");
    }
    return text;
}

StreamSettings withDefaults(const StreamRequest &request) {
    StreamSettings stream;
    stream.key = request.key;
    stream.channels = request.channels.value_or(stream.channels);
    stream.samplesPerChannel = request.samplesPerChannel.value_or(stream.samplesPerChannel);
    stream.sampleRate = request.sampleRate.value_or(stream.sampleRate);
    stream.format = request.format;
    if (request.sampleRate && request.format == nullptr) {
        stream.format = common::find(common::aafFormats, &common::AafFormat::name, "int16");
    }
    return stream;
}

/// A single frame that is out of order must not keep a stream from being monitored: its length is left to the frames
/// then, and so are the faults.
StreamSettings completed(const StreamRequest &request, const WireStream &heard) {
    const discovery::StreamFormat &format = heard.format;
    const bool isUsable = isAudio(heard) && (request.format != nullptr || format.samples() != nullptr) &&
                          (request.channels || (*format.channels > 0 && *format.channels <= 255));
    if (!isUsable) {
        throw common::Refusal("the stream " + request.key + " can't be monitored: " + heard.obstacle,
                              common::Refusal::failure);
    }
    StreamSettings stream;
    stream.key = request.key;
    stream.format = request.format != nullptr ? request.format : format.samples();
    stream.channels = request.channels ? *request.channels : *format.channels;
    const auto &samples = heard.samples;
    const bool isSteady = samples && samples->least == samples->greatest;
    stream.samplesPerChannel = request.samplesPerChannel.value_or(isSteady ? samples->greatest : 0);
    const unsigned declared = format.rate ? static_cast<unsigned>(*format.rate) : stream.sampleRate;
    stream.sampleRate = request.sampleRate.value_or(declared);
    return stream;
}

/// The one stream that is meant; null if none was heard.
const WireStream *findOne(const std::string &key, const Findings &findings) {
    const auto found = matching(key, findings);
    if (found.size() > 1) {
        throw common::Refusal("the address " + key + " sends several streams, name one by its ID: " + named(found));
    }
    return found.empty() ? nullptr : found.front();
}

} // namespace

bool areHeard(const std::vector<StreamRequest> &requests, const Findings &findings) {
    return std::all_of(requests.begin(), requests.end(), [&](const StreamRequest &request) {
        const auto found = matching(request.key, findings);
        return request.isComplete() || std::any_of(found.begin(), found.end(),
                                                   [](const auto *stream) { return stream->frames >= enoughFrames; });
    });
}

FittedStreams fitStreams(const std::vector<StreamRequest> &requests, const Findings &findings) {
    FittedStreams fitted;
    std::string unheard;
    for (const StreamRequest &request : requests) {
        const WireStream *heard = request.isComplete() ? nullptr : findOne(request.key, findings);
        fitted.streams.push_back(heard != nullptr ? completed(request, *heard) : withDefaults(request));
        if (!request.isComplete() && heard == nullptr) {
            unheard += (unheard.empty() ? "" : ", ") + request.key;
        }
    }
    if (!unheard.empty()) {
        fitted.notes.push_back("not heard in " + text::fixed(findings.seconds, 1) + " s: " + unheard +
                               "; what --stream leaves out is set to 2 channels, 6 samples and 16 bits");
    }
    return fitted;
}

FittedStreams allStreams(const Findings &findings, std::size_t mostStreams) {
    FittedStreams fitted;
    std::size_t leftOut = 0;
    for (const WireStream &heard : findings.streams) {
        if (!heard.obstacle.empty()) {
            fitted.notes.push_back("the stream " + keyOf(heard) + " can't be monitored: " + heard.obstacle);
        } else if (fitted.streams.size() < mostStreams) {
            StreamRequest request;
            request.key = keyOf(heard);
            fitted.streams.push_back(completed(request, heard));
        } else {
            ++leftOut;
        }
    }
    if (leftOut > 0) {
        fitted.notes.push_back(text::counted(leftOut, "more stream") +
                               " are left out, as this many are too much; --stream chooses others");
    }
    return fitted;
}

std::map<std::string, std::vector<std::string>> overviewOf(const std::vector<StreamSettings> &streams,
                                                           std::size_t mostChannels, std::vector<std::string> &notes) {
    std::map<std::string, std::vector<std::string>> analyses;
    std::size_t leftOut = 0;
    for (const StreamSettings &stream : streams) {
        if (stream.sampleRate != monitoring::usualRate) {
            notes.push_back("the stream " + stream.key + " has " + std::to_string(stream.sampleRate) +
                            " Hz, so it has no levels");
            continue;
        }
        for (unsigned channel = 0; channel < stream.channels; ++channel) {
            auto &levels = analyses["levels"];
            if (levels.size() < mostChannels) {
                levels.push_back(std::to_string(channel) + '@' + stream.key);
            } else {
                ++leftOut;
            }
        }
    }
    if (leftOut > 0) {
        notes.push_back("the levels of " + std::to_string(mostChannels) + " channels are shown, those of " +
                        std::to_string(leftOut) + " more are left out; --stream and --levels choose others");
    }
    const std::string first = '@' + streams.front().key;
    analyses["waveform"] = {"0:480" + first};
    analyses["spectrum"] = {"0:12" + first};
    return analyses;
}

} // namespace analyser
