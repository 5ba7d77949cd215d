#include "analyser/AnalyserOptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include <QCommandLineParser>

#include <sonvex/version.h>

#include "analyser/Refusal.h"

namespace analyser {

namespace {

constexpr unsigned maximumAmount = 1U << 24U;
constexpr unsigned maximumSamplesPerPacket = 32767;
constexpr unsigned maximumMilliseconds = std::numeric_limits<int>::max();
constexpr double maximumSeconds = maximumMilliseconds / 1000.0;
constexpr unsigned sampleRate = 48000;

constexpr char generalHelp[] =
    "Usage: sonvex-analyser COMMAND [options]\n"
    "Shows the audio of AVTP streams that arrive at a network adapter.\n"
    "\n"
    "Commands:\n"
    "  devices  Lists the network adapters.\n"
    "  monitor  Shows the waveforms of live channels.\n"
    "\n"
    "Options:\n"
    "  -h, --help     Displays this help; after a command, the help of the command.\n"
    "  -v, --version  Displays version information.\n"
    "\n"
    "Exit status: 0 in order, also after Ctrl-C; 1 if the machine stands in the way; 2 for a wrong command line.\n";

[[noreturn]] void refuse(const std::string &line) {
    throw Refusal(Refusal::usage, line);
}

std::vector<std::string> split(const std::string &text, char separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end - begin));
    }
    return parts;
}

template <class Number>
std::optional<Number> readNumber(const std::string &text) {
    Number number{};
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

unsigned parseNumber(const std::string &what, const std::string &text, unsigned minimum, unsigned maximum) {
    const auto number = readNumber<unsigned>(text);
    if (!number || *number < minimum || *number > maximum) {
        refuse(what + " '" + text + "' is no number from " + std::to_string(minimum) + " to " +
               std::to_string(maximum));
    }
    return *number;
}

double parseSeconds(const std::string &text) {
    const auto number = readNumber<double>(text);
    if (!number || !(*number >= 0.001) || !(*number <= maximumSeconds)) {
        refuse("--seconds '" + text + "' is no number from 0.001 to " + std::to_string(maximumMilliseconds / 1000));
    }
    return *number;
}

std::string parseMac(const std::string &text) {
    constexpr std::size_t digitAmount = 12;
    const bool separated = text.size() == 17 && (text[2] == ':' || text[2] == '-');
    std::string mac;
    bool good = separated || text.size() == digitAmount;
    for (std::size_t i = 0; good && i < text.size(); ++i) {
        if (separated && i % 3 == 2) {
            good = text[i] == text[2];
        } else {
            constexpr std::string_view digits = "0123456789abcdefABCDEF";
            const auto position = digits.find(text[i]);
            good = position != std::string_view::npos;
            mac += good ? digits[position < 16 ? position : position - 6] : '?';
        }
    }
    if (!good) {
        refuse("'" + text +
               "' is no MAC address (12 hexadecimal digits, with or without ':' or '-' between the bytes)");
    }
    return mac;
}

StreamOptions parseStream(const std::string &text) {
    const auto parts = split(text, ',');
    StreamOptions stream;
    stream.mac = parseMac(parts.front());
    std::vector<std::string> seen;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const auto equals = parts[i].find('=');
        const std::string key = parts[i].substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : parts[i].substr(equals + 1);
        if (key == "channels") {
            stream.channels = parseNumber("--stream channels", value, 1, 255);
        } else if (key == "samples") {
            stream.samplesPerChannel = parseNumber("--stream samples", value, 1, maximumSamplesPerPacket);
        } else {
            refuse("--stream '" + text + "': '" + parts[i] + "' is neither channels=N nor samples=N");
        }
        if (std::find(seen.begin(), seen.end(), key) != seen.end()) {
            refuse("--stream '" + text + "' gives the " + key + " twice");
        }
        seen.push_back(key);
    }
    return stream;
}

std::vector<StreamOptions> parseStreams(const QStringList &values) {
    std::vector<StreamOptions> streams;
    for (const QString &value : values) {
        const StreamOptions stream = parseStream(value.toStdString());
        if (std::any_of(streams.begin(), streams.end(), [&](const auto &other) { return other.mac == stream.mac; })) {
            refuse("the stream " + stream.mac + " is given twice");
        }
        streams.push_back(stream);
    }
    if (streams.empty()) {
        refuse("monitor needs a --stream MAC[,channels=N][,samples=N]");
    }
    return streams;
}

WaveformOptions parseWaveform(const std::string &text, const std::vector<StreamOptions> &streams) {
    const auto at = text.find('@');
    const auto parts = split(text.substr(0, at), ':');
    if (parts.size() != 2) {
        refuse("--waveform '" + text + "' is not of the form CHANNEL:AMOUNT[@MAC]");
    }
    WaveformOptions waveform;
    waveform.channel = static_cast<unsigned char>(parseNumber("--waveform channel", parts[0], 0, 254));
    waveform.amount = parseNumber("--waveform amount", parts[1], 1, maximumAmount);
    waveform.mac = at == std::string::npos ? streams.front().mac : parseMac(text.substr(at + 1));

    const auto stream = std::find_if(streams.begin(), streams.end(),
                                     [&](const auto &candidate) { return candidate.mac == waveform.mac; });
    if (stream == streams.end()) {
        refuse("--waveform '" + text + "' names a stream that no --stream gives");
    }
    if (waveform.channel >= stream->channels) {
        refuse("--waveform '" + text + "': the stream " + stream->mac + " has the channels 0 to " +
               std::to_string(stream->channels - 1) + " only");
    }
    return waveform;
}

std::vector<WaveformOptions> parseWaveforms(const QStringList &values, const std::vector<StreamOptions> &streams) {
    std::vector<WaveformOptions> waveforms;
    for (const QString &value : values) {
        const WaveformOptions waveform = parseWaveform(value.toStdString(), streams);
        if (std::any_of(waveforms.begin(), waveforms.end(), [&](const auto &other) {
                return other.mac == waveform.mac && other.channel == waveform.channel;
            })) {
            refuse("channel " + std::to_string(waveform.channel) + " of the stream " + waveform.mac +
                   " has two waveforms, it can have one");
        }
        waveforms.push_back(waveform);
    }
    if (waveforms.empty()) {
        refuse("monitor needs a --waveform CHANNEL:AMOUNT[@MAC]");
    }
    return waveforms;
}

ClockOptions parseClock(const std::string &text) {
    const auto parts = split(text, ':');
    if (parts.size() == 2 && parts[0] == "external") {
        return {false, parseNumber("--clock external", parts[1], 1, std::numeric_limits<unsigned>::max())};
    }
    if (parts.size() == 2 && parts[0] == "internal") {
        return {true, parseNumber("--clock internal", parts[1], 1, maximumMilliseconds)};
    }
    refuse("--clock '" + text + "' is neither external:SAMPLES nor internal:MS");
}

Format parseFormat(const std::string &text, const std::vector<std::pair<std::string, Format>> &formats) {
    std::string names;
    for (const auto &[name, format] : formats) {
        if (name == text) {
            return format;
        }
        names += (names.empty() ? "" : ", ") + name;
    }
    refuse("--format '" + text + "' is none of " + names);
}

/// One option that may be given once.
std::optional<std::string> single(const QCommandLineParser &parser, const char *name) {
    const QStringList values = parser.values(QString::fromLatin1(name));
    if (values.size() > 1) {
        refuse("--" + std::string(name) + " is given twice");
    }
    return values.isEmpty() ? std::nullopt : std::optional(values.first().toStdString());
}

std::string file(const QCommandLineParser &parser, const char *name) {
    const auto value = single(parser, name);
    if (value && value->empty()) {
        refuse("--" + std::string(name) + " needs the name of a file");
    }
    return value.value_or("");
}

LogOptions logOptions(const QCommandLineParser &parser) {
    return {parser.isSet(QStringLiteral("verbose")), file(parser, "log")};
}

void addOption(QCommandLineParser &parser, const char *name, const char *description, const char *value = "") {
    parser.addOption({QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
}

void addCommonOptions(QCommandLineParser &parser, const char *command, const char *description) {
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addPositionalArgument(QString::fromLatin1(command), QString::fromLatin1("This command."));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Displays this help.")});
    addOption(parser, "verbose", "Shows the library's log on the error output.");
    addOption(parser, "log", "Appends the library's log to <file>, with the time in UTC.", "file");
}

/// @return whether the command's help is asked for
bool parse(QCommandLineParser &parser, const QStringList &arguments) {
    if (!parser.parse(arguments)) {
        std::string error = parser.errorText().toStdString();
        if (!error.empty() && error.back() == '.') {
            error.pop_back();
        }
        refuse(error + " (--help lists the options)");
    }
    if (parser.positionalArguments().size() > 1) {
        refuse("unexpected argument '" + parser.positionalArguments().at(1).toStdString() + "'");
    }
    return parser.isSet(QStringLiteral("help"));
}

Command parseDevices(const QStringList &arguments) {
    QCommandLineParser parser;
    addCommonOptions(parser, "devices", "Lists the network adapters that frames can be captured from.");
    addOption(parser, "format", "text (the default) or json: one object per line.", "format");
    if (parse(parser, arguments)) {
        return ShownText{parser.helpText().toStdString()};
    }
    DevicesOptions options;
    options.format =
        parseFormat(single(parser, "format").value_or("text"), {{"text", Format::text}, {"json", Format::json}});
    options.log = logOptions(parser);
    return options;
}

void addMonitorOptions(QCommandLineParser &parser) {
    addOption(parser, "device", "The network adapter, as the command devices names it.", "name");
    addOption(parser, "stream",
              "MAC[,channels=N][,samples=N]: a stream by its source address, with the most channels that its packets "
              "hold (2) and the samples of each channel in a packet (6). May be repeated.",
              "stream");
    addOption(parser, "waveform",
              "CHANNEL:AMOUNT[@MAC]: a curve of AMOUNT samples of a channel, counted from 0, of the stream MAC or of "
              "the first one. May be repeated, once for each channel.",
              "waveform");
    addOption(parser, "clock",
              "When results come: external:SAMPLES, after each so many samples of the channel (external:480), or "
              "internal:MS, in a period of milliseconds.",
              "clock");
    addOption(parser, "buffer",
              "Samples that the buffer of each channel holds (one second more than the longest curve).", "samples");
    addOption(parser, "seconds", "Ends after so many seconds; without, Ctrl-C does.", "seconds");
    addOption(parser, "format", "live (a view that redraws in place, the default), json (one object per line) or csv.",
              "format");
    addOption(parser, "output", "Writes to <file> in place of the standard output.", "file");
}

Command parseMonitor(const QStringList &arguments) {
    QCommandLineParser parser;
    addCommonOptions(parser, "monitor", "Shows the waveforms of live channels. Values have a full scale of +-1.0.");
    addMonitorOptions(parser);
    if (parse(parser, arguments)) {
        return ShownText{parser.helpText().toStdString()};
    }
    MonitorOptions options;
    options.device = single(parser, "device").value_or("");
    if (options.device.empty()) {
        refuse("monitor needs a --device NAME (the command devices lists them)");
    }
    options.streams = parseStreams(parser.values(QStringLiteral("stream")));
    options.waveforms = parseWaveforms(parser.values(QStringLiteral("waveform")), options.streams);
    if (const auto clock = single(parser, "clock")) {
        options.clock = parseClock(*clock);
    }
    for (const auto &waveform : options.waveforms) {
        options.bufferSize = std::max(options.bufferSize, waveform.amount + sampleRate);
    }
    if (const auto buffer = single(parser, "buffer")) {
        options.bufferSize = parseNumber("--buffer", *buffer, 0, 2 * maximumAmount);
    }
    if (const auto seconds = single(parser, "seconds")) {
        options.seconds = parseSeconds(*seconds);
    }
    options.format = parseFormat(single(parser, "format").value_or("live"),
                                 {{"live", Format::live}, {"json", Format::json}, {"csv", Format::csv}});
    options.output = file(parser, "output");
    options.log = logOptions(parser);
    return options;
}

} // namespace

std::string ClockOptions::toString() const {
    return internal ? "internal:" + std::to_string(period) + " ms" : "external:" + std::to_string(period) + " samples";
}

Command parseCommandLine(const QStringList &arguments) {
    const std::string command = arguments.size() > 1 ? arguments[1].toStdString() : "";
    if (command == "devices") {
        return parseDevices(arguments);
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
           ": devices or monitor come first (--help says more)");
}

} // namespace analyser
