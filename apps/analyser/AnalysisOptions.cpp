#include "analyser/AnalysisOptions.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "analyser/Text.h"
#include "common/MacAddress.h"
#include "common/Refusal.h"
#include "common/parseNumber.h"

namespace analyser {

namespace {

constexpr unsigned maximumAmount = 1U << 24U;
constexpr unsigned minimumOrder = 2; // two samples have no window, and nothing but their mean to show
constexpr unsigned maximumOrder = 24;
constexpr unsigned maximumChannel = 254;
constexpr unsigned maximumMilliseconds = std::numeric_limits<int>::max();
constexpr unsigned maximumCycles = 10000;
constexpr unsigned samplesPerMillisecond = 48;
constexpr unsigned cyclesPerLevels = 6; // the library measures levels in every sixth cycle
constexpr char averagingForm[] = "average=cycles:N or average=ms:N";

[[noreturn]] void refuse(const std::string &text) {
    throw common::Refusal(text);
}

/// Reads the values of one option.
class AnalysisParser {
public:
    /// @param form of a value, for refusals
    AnalysisParser(std::string option, std::string form, const AnalysisFrame &frame)
        : option(std::move(option)), form(std::move(form)), frame(frame) {}

    AnalysisOptions parse(AnalysisKind kind, const std::string &text) const {
        const std::string title = option + " '" + text + "'";
        const auto at = text.find('@');
        const auto parts = text::split(text.substr(0, at), ':');
        AnalysisOptions analysis;
        analysis.kind = kind;
        analysis.clock = frame.clock;
        bool isComplete = false;
        switch (kind) {
        case AnalysisKind::waveform:
            isComplete = parts.size() == 2;
            break;
        case AnalysisKind::spectrum:
            isComplete = parts.size() == 2 || parts.size() == 4;
            break;
        case AnalysisKind::levels:
            isComplete = parts.size() == 1;
            break;
        }
        if (!isComplete) {
            refuse(title + " is not of the form " + form);
        }
        analysis.channel = common::parseNumber<unsigned>(parts[0], option + " channel", 0, maximumChannel);
        if (kind == AnalysisKind::waveform) {
            analysis.amount = common::parseNumber<unsigned>(parts[1], option + " amount", 1, maximumAmount);
        } else if (kind == AnalysisKind::spectrum) {
            analysis.order = common::parseNumber<unsigned>(parts[1], option + " order", minimumOrder, maximumOrder);
            analysis.amount = 1U << analysis.order;
            if (parts.size() == 4) {
                analysis.averaging = parseAveraging(title, parts[2], parts[3]);
            }
        } else {
            analysis.clock.internal = false;
            analysis.clock.period = frame.clock.internal ? ClockOptions().period : frame.clock.period;
            if (analysis.clock.period > maximumAmount / cyclesPerLevels) {
                refuse(title + " needs a clock of at most external:" + std::to_string(maximumAmount / cyclesPerLevels));
            }
            analysis.amount = cyclesPerLevels * analysis.clock.period;
        }
        analysis.mac = streamOf(analysis.channel, title, at == std::string::npos ? "" : text.substr(at + 1));
        return analysis;
    }

private:
    AveragingOptions parseAveraging(const std::string &title, const std::string &unit,
                                    const std::string &number) const {
        if (unit == "average=cycles") {
            return {true, common::parseNumber<unsigned>(number, option + " average=cycles", 2, maximumCycles)};
        }
        if (unit != "average=ms") {
            refuse(title + ": an average is of the form " + averagingForm);
        }
        if (!frame.clock.internal && frame.clock.period < samplesPerMillisecond) {
            refuse(title + " needs a clock of at least external:" + std::to_string(samplesPerMillisecond));
        }
        const unsigned cycle = frame.clock.internal ? frame.clock.period : frame.clock.period / samplesPerMillisecond;
        const auto window = common::parseNumber<unsigned>(number, option + " average=ms", 1, maximumMilliseconds);
        if (window / cycle < 2 || window / cycle > maximumCycles) {
            refuse(title + ": a window has 2 to " + std::to_string(maximumCycles) + " cycles, of " +
                   std::to_string(cycle) + " ms with this clock");
        }
        return {false, window};
    }

    /// The address of the stream that the text names, or of the first one. It has such a channel.
    std::string streamOf(unsigned channel, const std::string &title, const std::string &address) const {
        std::string mac = title.find('@') == std::string::npos
                              ? frame.streams.front().mac
                              : common::toString(common::parseMacAddress(address, option));
        const auto stream = std::find_if(frame.streams.begin(), frame.streams.end(),
                                         [&](const auto &candidate) { return candidate.mac == mac; });
        if (stream == frame.streams.end()) {
            refuse(title + " names a stream that no --stream gives");
        }
        if (channel >= stream->channels) {
            refuse(title + ": the stream " + mac + " has the channels 0 to " + std::to_string(stream->channels - 1) +
                   " only");
        }
        return mac;
    }

    std::string option;
    std::string form;
    const AnalysisFrame &frame;
};

std::string plural(AnalysisKind kind) {
    return kind == AnalysisKind::waveform ? "waveforms" : kind == AnalysisKind::spectrum ? "spectra" : "sets of levels";
}

} // namespace

std::string ClockOptions::toString() const {
    return internal ? "internal:" + std::to_string(period) + " ms" : "external:" + std::to_string(period) + " samples";
}

double ClockOptions::seconds() const {
    return period / (internal ? 1000.0 : sampleRate);
}

std::string AveragingOptions::toString() const {
    return (inCycles ? "cycles:" : "ms:") + std::to_string(window);
}

std::string AnalysisOptions::type() const {
    return kind == AnalysisKind::waveform ? "waveform" : kind == AnalysisKind::spectrum ? "spectrum" : "levels";
}

unsigned AnalysisOptions::cyclesPerResult() const {
    return kind == AnalysisKind::levels ? cyclesPerLevels : 1;
}

std::vector<AnalysisOptions> parseAnalyses(const std::vector<std::string> &waveforms,
                                           const std::vector<std::string> &spectra,
                                           const std::vector<std::string> &levels, const AnalysisFrame &frame) {
    std::vector<AnalysisOptions> analyses;
    const auto add = [&](AnalysisKind kind, const std::vector<std::string> &values, const AnalysisParser &parser) {
        for (const std::string &value : values) {
            const AnalysisOptions analysis = parser.parse(kind, value);
            if (std::any_of(analyses.begin(), analyses.end(), [&](const auto &other) {
                    return other.kind == kind && other.mac == analysis.mac && other.channel == analysis.channel;
                })) {
                refuse("channel " + std::to_string(analysis.channel) + " of the stream " + analysis.mac + " has two " +
                       plural(kind) + ", it can have one");
            }
            analyses.push_back(analysis);
        }
    };
    add(AnalysisKind::waveform, waveforms, {"--waveform", "CHANNEL:AMOUNT[@MAC]", frame});
    add(AnalysisKind::spectrum, spectra, {"--spectrum", "CHANNEL:ORDER[:average=cycles:N|ms:N][@MAC]", frame});
    add(AnalysisKind::levels, levels, {"--levels", "CHANNEL[@MAC]", frame});
    if (analyses.empty()) {
        refuse("monitor needs a --waveform CHANNEL:AMOUNT[@MAC], --spectrum CHANNEL:ORDER[@MAC] or --levels "
               "CHANNEL[@MAC]");
    }
    return analyses;
}

std::string describeLimits(const std::vector<AnalysisOptions> &analyses, unsigned bufferSize) {
    std::vector<std::string> limits;
    const auto say = [&](const std::string &text) {
        if (std::find(limits.begin(), limits.end(), text) == limits.end()) {
            limits.push_back(text);
        }
    };
    const bool onTimer =
        std::any_of(analyses.begin(), analyses.end(), [](const auto &one) { return one.clock.internal; });
    for (const AnalysisOptions &analysis : analyses) {
        const std::string buffer = "the buffer holds " + std::to_string(bufferSize) + " samples, so ";
        if (analysis.kind == AnalysisKind::waveform && bufferSize < analysis.amount) {
            say(buffer + "curves of more are cut to that");
        }
        if (analysis.kind == AnalysisKind::spectrum && !analysis.clock.internal &&
            analysis.clock.period > analysis.amount) {
            say("spectra of " + std::to_string(analysis.amount) + " samples leave out " +
                std::to_string(analysis.clock.period - analysis.amount) + " of each " +
                std::to_string(analysis.clock.period) + " samples of the clock");
        }
        if (analysis.kind == AnalysisKind::levels && bufferSize < analysis.amount) {
            say(buffer + "levels are not gapless: of each " + std::to_string(analysis.amount) +
                " samples the last count as silence, and those before them are left out");
        }
        if (analysis.kind == AnalysisKind::levels && onTimer) {
            say("levels can't be measured on a timer and stay on the clock " + analysis.clock.toString());
        }
    }
    std::string text;
    for (const std::string &limit : limits) {
        text += (text.empty() ? "" : "; ") + limit;
    }
    return text;
}

} // namespace analyser
