#include "talker/TalkerOptions.h"

#include <algorithm>
#include <cmath>

#include "common/CommandLine.h"
#include "common/Refusal.h"
#include "common/parseNumber.h"

namespace talker {

namespace {

constexpr double minSeconds = 0.001;
constexpr double maxSeconds = 1e9;
constexpr std::uint64_t maxFrames = 1'000'000'000'000;

/// The options with their help; those of the faults are named as in faultNames.
void addOptions(common::CommandLine &line) {
    line.addVersionOption();
    line.addOption("device", "Adapter to send on.", "NAME");
    line.addOption("source", "Source address, which names the stream; the adapter's own by default.", "MAC");
    line.addOption("destination", "Destination address, 91:e0:f0:00:fe:00 by default.", "MAC");
    line.addOption("channels", "Channels of the stream, 2 by default.", "N");
    line.addOption("samples-per-packet", "Samples per channel in each frame, 6 by default.", "S");
    line.addOption("signal",
                   "sine:HZ:AMPLITUDE, square:HZ:AMPLITUDE, noise:AMPLITUDE, ramp (channel c is 1000 c codes ahead), "
                   "silence or wav:FILE; full scale is 1.0. Repeated for the channels in their order, the last one "
                   "serves all further channels. sine:1000:0.5 by default.",
                   "SPEC");
    line.addOption("seconds", "End after this time; without it and --frames only a signal ends the talker.", "T");
    line.addOption("frames", "End after this many frames.", "N");
    line.addOption("drop", "Fault: frame K, counted from 0, is not sent. All faults can be repeated.", "K");
    line.addOption("repeat", "Fault: frame K is sent twice.", "K");
    line.addOption("channels-at", "Fault: from frame K on there are N channels.", "K:N");
    line.addOption("truncate", "Fault: frame K is cut to so many bytes in all.", "K:BYTES");
    line.addOption("length-at", "Fault: frame K declares so many bytes of samples.", "K:BYTES");
}

template <typename Number>
std::optional<Number> number(const common::CommandLine &line, const char *name, Number min, Number max) {
    const auto text = line.single(name);
    return text ? std::optional(common::parseNumber<Number>(*text, std::string("--") + name, min, max)) : std::nullopt;
}

std::optional<common::MacAddress> address(const common::CommandLine &line, const char *name) {
    const auto text = line.single(name);
    return text ? std::optional(common::parseMacAddress(*text, std::string("--") + name)) : std::nullopt;
}

std::optional<std::uint64_t> frameAmount(const common::CommandLine &line, unsigned samplesPerPacket) {
    const auto seconds = number<double>(line, "seconds", minSeconds, maxSeconds);
    const auto frames = number<std::uint64_t>(line, "frames", 1, maxFrames);
    if (seconds && frames) {
        throw common::Refusal("--seconds and --frames exclude each other");
    }
    if (seconds) {
        const double samples = *seconds * samplesPerSecond;
        return static_cast<std::uint64_t>(std::max(1LL, std::llround(samples / samplesPerPacket)));
    }
    return frames;
}

TalkerOptions talkerOptions(const common::CommandLine &line) {
    const auto device = line.single("device");
    if (!device) {
        throw common::Refusal("--device is missing: name the adapter to send on");
    }
    auto signals = line.all("signal");
    if (signals.empty()) {
        signals.emplace_back("sine:1000:0.5");
    }
    constexpr common::MacAddress streamAddress = {0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00};
    const auto samplesPerPacket =
        number<unsigned>(line, "samples-per-packet", 1, AafFrame::maxSamplesPerChannel).value_or(6);
    TalkerOptions options = {*device,
                             address(line, "source"),
                             address(line, "destination").value_or(streamAddress),
                             number<unsigned>(line, "channels", 1, AafFrame::maxChannels).value_or(2),
                             samplesPerPacket,
                             ChannelSignals(signals),
                             frameAmount(line, samplesPerPacket),
                             FaultPlan()};
    for (std::size_t i = 0; i < faultNames.size(); ++i) {
        for (const std::string &text : line.all(faultNames[i])) {
            options.faults.add(static_cast<Fault>(i), text);
        }
    }
    options.faults.check(options.channels, samplesPerPacket);
    const unsigned mostChannels = options.faults.mostChannels(options.channels);
    if (AafFrame::dataLength(mostChannels, samplesPerPacket) > AafFrame::maxDataLength) {
        throw common::Refusal(std::to_string(mostChannels) + " channels of " + std::to_string(samplesPerPacket) +
                              " samples are more than an AAF frame can hold");
    }
    return options;
}

} // namespace

Command parseCommandLine(const QStringList &arguments) {
    common::CommandLine line("Sends an AVTP audio stream of 48 kHz and 16 bit.");
    addOptions(line);
    line.parse(arguments);
    if (line.has("help")) {
        return line.helpText();
    }
    if (line.has("version")) {
        return std::string("sonvex-talker " TALKER_VERSION "\n");
    }
    return talkerOptions(line);
}

} // namespace talker
