#include "talker/TalkerOptions.h"

#include <algorithm>
#include <cmath>

#include <QCommandLineParser>

#include "talker/parseNumber.h"

namespace talker {

namespace {

constexpr double maxSeconds = 1e9;
constexpr std::uint64_t maxFrames = 1'000'000'000'000;

/// The options with their help; those of the faults are named as in faultNames.
QList<QCommandLineOption> allOptions() {
    const auto text = [](const char *latin) { return QString::fromLatin1(latin); };
    const auto option = [&text](const char *name, const char *help, const char *value, const char *standard = "") {
        return QCommandLineOption(text(name), text(help), text(value), text(standard));
    };
    return {
        option("device", "Adapter to send on.", "NAME"),
        option("source", "Source address, which names the stream; the adapter's own by default.", "MAC"),
        option("destination", "Destination address, 91:e0:f0:00:fe:00 by default.", "MAC", "91:e0:f0:00:fe:00"),
        option("channels", "Channels of the stream, 2 by default.", "N", "2"),
        option("samples-per-packet", "Samples per channel in each frame, 6 by default.", "S", "6"),
        option("signal",
               "sine:HZ:AMPLITUDE, square:HZ:AMPLITUDE, noise:AMPLITUDE, ramp (channel c is 1000 c codes ahead), "
               "silence or wav:FILE; full scale is 1.0. Repeated for the channels in their order, the last one serves "
               "all further channels. sine:1000:0.5 by default.",
               "SPEC", "sine:1000:0.5"),
        option("seconds", "End after this time; without it and --frames only a signal ends the talker.", "T"),
        option("frames", "End after this many frames.", "N"),
        option("drop", "Fault: frame K, counted from 0, is not sent. All faults can be repeated.", "K"),
        option("repeat", "Fault: frame K is sent twice.", "K"),
        option("channels-at", "Fault: from frame K on there are N channels.", "K:N"),
        option("truncate", "Fault: frame K is cut to so many bytes in all.", "K:BYTES"),
        option("length-at", "Fault: frame K declares so many bytes of samples.", "K:BYTES"),
    };
}

/// Answers in the encoding of file names, and with the name of the option for refusals.
class Values {
public:
    explicit Values(const QCommandLineParser &parser) : parser(parser) {}

    bool has(const char *name) const { return parser.isSet(QString::fromLatin1(name)); }
    std::string text(const char *name) const {
        return parser.value(QString::fromLatin1(name)).toLocal8Bit().toStdString();
    }
    std::vector<std::string> texts(const char *name) const {
        std::vector<std::string> result;
        for (const QString &value : parser.values(QString::fromLatin1(name))) {
            result.push_back(value.toLocal8Bit().toStdString());
        }
        return result;
    }
    MacAddress address(const char *name) const { return parseMacAddress(text(name), option(name)); }
    template <typename Number>
    Number number(const char *name, Number min, Number max) const {
        return parseNumber<Number>(text(name), option(name), min, max);
    }

private:
    static std::string option(const char *name) { return std::string("--") + name; }

    const QCommandLineParser &parser;
};

std::optional<std::uint64_t> frameAmount(const Values &values, unsigned samplesPerPacket) {
    if (values.has("seconds") && values.has("frames")) {
        throw Refusal("--seconds and --frames exclude each other");
    }
    if (values.has("frames")) {
        return values.number<std::uint64_t>("frames", 1, maxFrames);
    }
    if (values.has("seconds")) {
        const double samples = values.number<double>("seconds", 0.0, maxSeconds) * samplesPerSecond;
        return static_cast<std::uint64_t>(std::max(1LL, std::llround(samples / samplesPerPacket)));
    }
    return std::nullopt;
}

} // namespace

TalkerOptions TalkerOptions::parse(const QStringList &arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Sends an AVTP audio stream of 48 kHz and 16 bit."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    parser.addOption(help);
    parser.addOptions(allOptions());
    if (!parser.parse(arguments)) {
        throw Refusal(parser.errorText().toLocal8Bit().toStdString());
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    if (!parser.positionalArguments().isEmpty()) {
        throw Refusal("unexpected argument '" + parser.positionalArguments().constFirst().toLocal8Bit().toStdString() +
                      "'");
    }
    const Values values(parser);
    if (!values.has("device")) {
        throw Refusal("--device is missing: name the adapter to send on");
    }

    const auto samplesPerPacket = values.number<unsigned>("samples-per-packet", 1, AafFrame::maxSamplesPerChannel);
    TalkerOptions options = {values.text("device"),
                             std::nullopt,
                             values.address("destination"),
                             values.number<unsigned>("channels", 1, AafFrame::maxChannels),
                             samplesPerPacket,
                             ChannelSignals(values.texts("signal")),
                             frameAmount(values, samplesPerPacket),
                             FaultPlan()};
    if (values.has("source")) {
        options.source = values.address("source");
    }
    for (std::size_t i = 0; i < faultNames.size(); ++i) {
        for (const std::string &text : values.texts(faultNames[i])) {
            options.faults.add(static_cast<Fault>(i), text);
        }
    }
    options.faults.check(options.channels, samplesPerPacket);
    const unsigned mostChannels = options.faults.mostChannels(options.channels);
    if (AafFrame::dataLength(mostChannels, samplesPerPacket) > AafFrame::maxDataLength) {
        throw Refusal(std::to_string(mostChannels) + " channels of " + std::to_string(samplesPerPacket) +
                      " samples are more than an AAF frame can hold");
    }
    return options;
}

} // namespace talker
