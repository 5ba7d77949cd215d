#include "analyser/AnalyserOptions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <utility>

#include <sonvex/version.h>

#include "common/CommandLine.h"
#include "common/Refusal.h"
#include "common/Text.h"
#include "common/parseNumber.h"
#include "common/streamArgument.h"
#include "monitoring/analyses/AnalysisKind.h"

namespace analyser {

using monitoring::ClockSettings;
using monitoring::StreamSettings;

namespace {

constexpr unsigned maximumBuffer = 1U << 25U; // samples
constexpr unsigned maximumSamplesPerPacket = 32767;
constexpr unsigned maximumMilliseconds = std::numeric_limits<int>::max();
constexpr double maximumWindow = 3600.0; // seconds
constexpr double maximumSeconds = maximumMilliseconds / 1000.0;

constexpr char generalHelp[] =
    "Usage: sonvex-analyser COMMAND [options]\n"
    "Shows the audio of AVTP streams that arrive at a network adapter.\n"
    "\n"
    "Commands:\n"
    "  devices  Lists the network adapters.\n"
    "  streams  Listens at an adapter and lists the streams there, each with the option that monitors it.\n"
    "  monitor  Shows waveforms, power spectra and sound levels of live channels, of all streams if none is named.\n"
    "\n"
    "Options:\n"
    "  -h, --help     Displays this help; after a command, the help of the command.\n"
    "  -v, --version  Displays version information.\n"
    "\n"
    "Exit status: 0 in order, also after Ctrl-C; 1 if the machine stands in the way; 2 for a wrong command line.\n";

[[noreturn]] void refuse(const std::string &text) {
    throw common::Refusal(text);
}

template <class Entries, class Member, class Value>
const auto *parseEntry(const Entries &entries, Member member, const Value &value, const std::string &what) {
    const auto *entry = common::find(entries, member, value);
    if (entry == nullptr) {
        std::string known;
        for (const auto &candidate : entries) {
            std::ostringstream name;
            name << candidate.*member;
            known += (known.empty() ? "" : ", ") + name.str();
        }
        std::ostringstream refusal;
        refusal << what << ": '" << value << "' is none of " << known;
        refuse(refusal.str());
    }
    return entry;
}

void parseSetting(StreamRequest &stream, const std::string &key, const std::string &value) {
    constexpr unsigned most = std::numeric_limits<unsigned>::max();
    if (key == "channels") {
        stream.channels = common::parseNumber<unsigned>(value, "--stream channels", 1, 255);
    } else if (key == "samples") {
        stream.samplesPerChannel = common::parseNumber<unsigned>(value, "--stream samples", 0, maximumSamplesPerPacket);
    } else if (key == "format") {
        stream.format = parseEntry(common::aafFormats, &common::AafFormat::name, value, "--stream format");
    } else {
        const auto rate = common::parseNumber<unsigned>(value, "--stream rate", 0, most);
        stream.sampleRate = parseEntry(common::aafRates, &common::AafRate::hertz, rate, "--stream rate")->hertz;
    }
}

StreamRequest parseStream(const std::string &text) {
    const auto parts = text::split(text, ',');
    StreamRequest stream;
    stream.key = common::parseStreamKey(parts.front(), "--stream");
    std::vector<std::string> seen;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const auto equals = parts[i].find('=');
        const std::string key = parts[i].substr(0, equals);
        if (key != "channels" && key != "samples" && key != "format" && key != "rate") {
            refuse("--stream '" + text + "': '" + parts[i] +
                   "' is none of channels=N, samples=N, format=NAME and rate=HZ");
        }
        if (std::find(seen.begin(), seen.end(), key) != seen.end()) {
            refuse("--stream '" + text + "' gives the " + key + " twice");
        }
        parseSetting(stream, key, equals == std::string::npos ? "" : parts[i].substr(equals + 1));
        seen.push_back(key);
    }
    return stream;
}

std::vector<StreamRequest> parseStreamRequests(const std::vector<std::string> &values) {
    std::vector<StreamRequest> streams;
    for (const std::string &value : values) {
        const StreamRequest stream = parseStream(value);
        if (std::any_of(streams.begin(), streams.end(), [&](const auto &other) { return other.key == stream.key; })) {
            refuse("the stream " + stream.key + " is given twice");
        }
        streams.push_back(stream);
    }
    return streams;
}

/// Streams that have all that is asked of them, as far as the command line leaves it open.
std::vector<StreamSettings> mostPossible(const MonitorOptions &options) {
    constexpr unsigned mostChannels = 255;
    std::vector<StreamSettings> streams;
    for (const StreamRequest &stream : options.streams) {
        streams.push_back({stream.key, stream.channels.value_or(mostChannels), 0, stream.format,
                           stream.sampleRate.value_or(monitoring::usualRate)});
    }
    if (streams.empty()) {
        streams.push_back({std::string(16, '0'), mostChannels, 0});
        for (const auto &[kind, values] : options.analyses) {
            for (const std::string &value : values) {
                if (const auto at = value.find('@'); at != std::string::npos) {
                    streams.push_back({common::parseStreamKey(value.substr(at + 1), "--" + kind), mostChannels, 0});
                }
            }
        }
    }
    return streams;
}

ClockSettings parseClock(const std::string &text) {
    const auto parts = text::split(text, ':');
    if (parts.size() == 2 && parts[0] == "external") {
        return {false,
                common::parseNumber<unsigned>(parts[1], "--clock external", 1, std::numeric_limits<unsigned>::max())};
    }
    if (parts.size() == 2 && parts[0] == "internal") {
        return {true, common::parseNumber<unsigned>(parts[1], "--clock internal", 1, maximumMilliseconds)};
    }
    refuse("--clock '" + text + "' is neither external:SAMPLES nor internal:MS");
}

Format parseFormat(const std::string &option, const std::string &text,
                   const std::vector<std::pair<std::string, Format>> &formats) {
    std::string names;
    for (const auto &[name, format] : formats) {
        if (name == text) {
            return format;
        }
        names += (names.empty() ? "" : ", ") + name;
    }
    refuse(option + " '" + text + "' is none of " + names);
}

std::string file(const common::CommandLine &line, const char *name) {
    const auto value = line.single(name);
    if (value && value->empty()) {
        refuse("--" + std::string(name) + " needs the name of a file");
    }
    return value.value_or("");
}

LogOptions logOptions(const common::CommandLine &line) {
    return {line.has("verbose"), file(line, "log")};
}

void addCommonOptions(common::CommandLine &line, const char *command) {
    line.setCommand(command);
    line.addOption("verbose", "Shows the library's log on the error output.");
    line.addOption("log", "Appends the library's log to <file>, with the time in UTC.", "file");
}

Command parseDevices(const QStringList &arguments) {
    common::CommandLine line("Lists the network adapters that frames can be captured from.");
    addCommonOptions(line, "devices");
    line.addOption("format", "text (the default) or json: one object per line.", "format");
    line.parse(arguments);
    if (line.has("help")) {
        return ShownText{line.helpText()};
    }
    DevicesOptions options;
    options.format = parseFormat("--format", line.single("format").value_or("text"),
                                 {{"text", Format::text}, {"json", Format::json}});
    options.log = logOptions(line);
    return options;
}

Command parseStreams(const QStringList &arguments) {
    constexpr double longest = 3600;
    common::CommandLine line(
        "Listens at an adapter for every AVTP stream, and for the streams that talkers announce to the network. Of "
        "each it tells what its frames say and how they come, and how to monitor it. It sends nothing.");
    addCommonOptions(line, "streams");
    line.addOption("device", "The network adapter, as the command devices names it.", "name");
    line.addOption("seconds", "Listens for so many seconds (3); Ctrl-C lists what was heard until then.", "seconds");
    line.addOption("format", "text (the default) or json: one document, in SI units.", "format");
    line.parse(arguments);
    if (line.has("help")) {
        return ShownText{line.helpText()};
    }
    StreamsOptions options;
    options.device = line.single("device").value_or("");
    if (options.device.empty()) {
        refuse("streams needs a --device NAME (the command devices lists them)");
    }
    const double seconds =
        common::parseNumber<double>(line.single("seconds").value_or("3"), "--seconds", 0.001, longest);
    options.duration = std::chrono::milliseconds(std::lround(seconds * 1000.0));
    options.format = parseFormat("--format", line.single("format").value_or("text"),
                                 {{"text", Format::text}, {"json", Format::json}});
    options.log = logOptions(line);
    return options;
}

void addMonitorOptions(common::CommandLine &line) {
    line.addOption("device", "The network adapter, as the command devices names it; one at a time.", "name");
    line.addOption(
        "stream",
        "STREAM[,channels=N][,samples=N][,format=int16|int24|int32|float32][,rate=HZ]: a stream by its source address, "
        "or by its ID if the source sends several, with the most channels that its packets hold, the samples of each "
        "channel in a packet (0 for what the length of each says), their format and their rate (48000 behind the three "
        "others). What is left out its frames say, which are listened for up to 1 s; without any, it is 2 channels, 6 "
        "samples and 16 bits. May be repeated; of N streams on an adapter each message of a changed channel amount "
        "arrives N times. Without this option: all streams that are heard in 1 to 3 s.",
        "stream");
    for (const monitoring::AnalysisKind *kind : monitoring::analysisKinds()) {
        line.addOption(kind->name, kind->help, kind->name);
    }
    line.addOption("reference",
                   "What 0 dBFS at this channel is in dB SPL, from a calibration: levels and spectra then show dB SPL.",
                   "dB");
    line.addOption("window",
                   "Seconds that the highest levels, the mean energies and the held peaks of spectra are shown for; "
                   "without, the whole run.",
                   "seconds");
    line.addOption(
        "clock",
        "When results come: external:SAMPLES, after each so many samples of the channel (external:480), or "
        "internal:MS, in a period of milliseconds. The internal one goes on when no frames arrive: that a talker has "
        "stopped can't be known then.",
        "clock");
    line.addOption("buffer", "Samples that the buffer of each channel holds (one second more than the longest result).",
                   "samples");
    line.addOption("seconds", "Ends after so many seconds; without, Ctrl-C does.", "seconds");
    line.addOption("format", "live (a view that redraws in place, the default), json (one object per line) or csv.",
                   "format");
    line.addOption("output", "Writes to <file> in place of the standard output.", "file");
    line.addOption(
        "also",
        "json:FILE or csv:FILE: a further output beside the first, which neither waits for the other. May be "
        "repeated.",
        "output");
    line.addOption(
        "wait", "While a reader of JSON or CSV takes nothing, results are left out once 16 MiB of them wait, and their "
                "amount is told. With this option none is: up to 256 MiB wait in memory, and then all waits for the "
                "reader.");
}

unsigned defaultBuffer(const monitoring::SessionSettings &session) {
    unsigned longest = 0;
    for (const auto &analysis : session.analyses) {
        longest = std::max(longest, analysis->amount());
    }
    unsigned second = monitoring::usualRate; // samples
    for (const StreamSettings &stream : session.streams) {
        second = std::max(second, stream.sampleRate);
    }
    return longest + second;
}

std::vector<OutputOptions> parseOutputs(const common::CommandLine &line) {
    const bool waits = line.has("wait");
    std::vector<OutputOptions> outputs;
    outputs.push_back({parseFormat("--format", line.single("format").value_or("live"),
                                   {{"live", Format::live}, {"json", Format::json}, {"csv", Format::csv}}),
                       file(line, "output"), waits});
    for (const std::string &also : line.all("also")) {
        const auto colon = also.find(':');
        if (colon == std::string::npos || colon + 1 == also.size()) {
            refuse("--also '" + also + "' is neither json:FILE nor csv:FILE");
        }
        outputs.push_back({parseFormat("--also", also.substr(0, colon), {{"json", Format::json}, {"csv", Format::csv}}),
                           also.substr(colon + 1), waits});
    }
    return outputs;
}

Command parseMonitor(const QStringList &arguments) {
    common::CommandLine line(
        "Shows waveforms, power spectra and sound levels of live channels; without any of these options the levels of "
        "all channels, and waveform and spectrum of the first one. Values have a full scale of +-1.0; 0 dBFS "
        "is a mean square of 1.0, so a sine at full scale has -3.01 dBFS, as a level and as the power of the bins of "
        "its peak in a spectrum. A level is the highest within the samples of its result; max is the highest since the "
        "start, and eq the mean of the results' energies. JSON and CSV hold values as the library gives them: linear "
        "power, and levels in dBFS. Packets missed are counted where a frame breaks the sequence of its stream, so a "
        "repeated frame counts, too.");
    addCommonOptions(line, "monitor");
    addMonitorOptions(line);
    line.parse(arguments);
    if (line.has("help")) {
        return ShownText{line.helpText()};
    }
    MonitorOptions options;
    monitoring::SessionSettings &session = options.session;
    session.device = line.single("device").value_or("");
    if (session.device.empty()) {
        refuse("monitor needs a --device NAME (the command devices lists them)");
    }
    options.streams = parseStreamRequests(line.all("stream"));
    if (const auto clock = line.single("clock")) {
        session.clock = parseClock(*clock);
    }
    for (const monitoring::AnalysisKind *kind : monitoring::analysisKinds()) {
        if (const auto values = line.all(kind->name); !values.empty()) {
            options.analyses[kind->name] = values;
        }
    }
    if (const auto buffer = line.single("buffer")) {
        options.bufferSize = common::parseNumber<unsigned>(*buffer, "--buffer", 0, maximumBuffer);
    }
    (void)settingsFor(options, mostPossible(options)); // what no stream allows is refused at once
    if (const auto reference = line.single("reference")) {
        session.reference = common::parseNumber<double>(*reference, "--reference", -300, 300);
    }
    if (const auto window = line.single("window")) {
        session.window = common::parseNumber<double>(*window, "--window", 0.001, maximumWindow);
    }
    if (const auto seconds = line.single("seconds")) {
        options.seconds = common::parseNumber<double>(*seconds, "--seconds", 0.001, maximumSeconds);
    }
    options.outputs = parseOutputs(line);
    options.log = logOptions(line);
    return options;
}

} // namespace

monitoring::SessionSettings settingsFor(const MonitorOptions &options, std::vector<StreamSettings> streams) {
    monitoring::SessionSettings session = options.session;
    session.streams = std::move(streams);
    session.analyses = monitoring::parseAnalyses(
        [&](const char *option) {
            const auto found = options.analyses.find(option);
            return found == options.analyses.end() ? std::vector<std::string>() : found->second;
        },
        {session.streams, session.clock});
    session.bufferSize = options.bufferSize.value_or(defaultBuffer(session));
    for (const auto &analysis : session.analyses) {
        if (const std::string refusal = analysis->bufferRefusal(session.bufferSize); !refusal.empty()) {
            refuse("--buffer " + std::to_string(session.bufferSize) + ' ' + refusal);
        }
    }
    return session;
}

Command parseCommandLine(const QStringList &arguments) {
    const std::string command = arguments.size() > 1 ? arguments[1].toStdString() : "";
    if (command == "devices") {
        return parseDevices(arguments);
    }
    if (command == "streams") {
        return parseStreams(arguments);
    }
    if (command == "monitor") {
        return parseMonitor(arguments);
    }
    if (command == "--help" || command == "-h") {
        return ShownText{generalHelp};
    }
    if (command == "--version" || command == "-v") {
        return ShownText{"sonvex-analyser " + qo::sonvexLib::getVersion() + '\n'};
    }
    refuse((command.empty() ? "a command is missing" : "'" + command + "' is no command") +
           ": devices, streams or monitor come first (--help says more)");
}

} // namespace analyser
