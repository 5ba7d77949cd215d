#include "monitoring/analyses/AnalysisKind.h"

#include <algorithm>

#include "common/Refusal.h"
#include "common/Text.h"
#include "common/parseNumber.h"
#include "common/streamArgument.h"
#include "monitoring/analyses/SoundLevels.h"
#include "monitoring/analyses/Spectrum.h"
#include "monitoring/analyses/Waveform.h"

namespace monitoring {

namespace {

constexpr unsigned maximumChannel = 254;

std::string optionOf(const AnalysisKind &kind) {
    return std::string("--") + kind.name;
}

} // namespace

const std::vector<const AnalysisKind *> &analysisKinds() {
    static const std::vector<const AnalysisKind *> kinds = {&Waveform::description, &Spectrum::description,
                                                            &SoundLevels::description};
    return kinds;
}

AnalysisValue::AnalysisValue(const AnalysisKind &kind, const std::string &text, const Frame &frame)
    : kind(kind), title(optionOf(kind) + " '" + text + "'"), frame(frame) {
    const auto at = text.find('@');
    split = text::split(text.substr(0, at), ':');
    address = at == std::string::npos ? frame.streams.front().key
                                      : common::parseStreamKey(text.substr(at + 1), optionOf(kind));
}

const std::vector<std::string> &AnalysisValue::parts(std::initializer_list<std::size_t> amounts) const {
    if (std::find(amounts.begin(), amounts.end(), split.size()) == amounts.end()) {
        throw common::Refusal(title + " is not of the form " + kind.form);
    }
    return split;
}

std::string AnalysisValue::numberTitle(const char *number) const {
    return optionOf(kind) + ' ' + number;
}

Analysis::Channel AnalysisValue::channel() const {
    const auto number = common::parseNumber<unsigned>(split.front(), numberTitle("channel"), 0, maximumChannel);
    const auto stream = std::find_if(frame.streams.begin(), frame.streams.end(),
                                     [&](const auto &candidate) { return candidate.key == address; });
    if (stream == frame.streams.end()) {
        refuse(" names a stream that no --stream gives");
    }
    if (number >= stream->channels) {
        refuse(": the stream " + address + " has the channels 0 to " + std::to_string(stream->channels - 1) + " only");
    }
    return {address, number, stream->sampleRate};
}

void AnalysisValue::refuse(const std::string &text) const {
    throw common::Refusal(title + text);
}

Analyses parseAnalyses(const std::function<std::vector<std::string>(const char *option)> &valuesOf,
                       const AnalysisValue::Frame &frame) {
    Analyses analyses;
    for (const AnalysisKind *kind : analysisKinds()) {
        for (const std::string &value : valuesOf(kind->name)) {
            auto analysis = kind->parse(AnalysisValue(*kind, value, frame));
            const auto isSame = [&](const auto &other) { return other->name() == analysis->name(); };
            if (std::any_of(analyses.begin(), analyses.end(), isSame)) {
                throw common::Refusal("channel " + std::to_string(analysis->channel().number) + " of the stream " +
                                      analysis->channel().stream + " has two " + kind->plural + ", it can have one");
            }
            analyses.push_back(std::move(analysis));
        }
    }
    return analyses;
}

} // namespace monitoring
