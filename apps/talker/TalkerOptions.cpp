#include "talker/TalkerOptions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

#include "common/CommandLine.h"
#include "common/Refusal.h"
#include "common/parseNumber.h"

namespace talker {

namespace {

constexpr double minSeconds = 0.001;
constexpr double maxSeconds = 1e9;
/// Of class A, as most talkers send them.
constexpr unsigned packetsPerSecond = 8000;
constexpr unsigned maxStreams = 64;
constexpr std::uint64_t maxFrames = 1'000'000'000'000;

/// The options with their help.
void addOptions(common::CommandLine &line) {
    line.addVersionOption();
    line.addOption("device", "Adapter to send on.", "NAME");
    line.addOption("source", "Source address; the adapter's own by default.", "MAC");
    line.addOption("destination", "Destination address, 91:e0:f0:00:fe:00 by default.", "MAC");
    line.addOption("stream-id", "ID of the stream; by default the source address, then 00:00.", "ID");
    line.addOption("vlan",
                   "Sends frames with an 802.1Q tag, VLAN 0 to 4094 and priority 0 to 7, 3 by default. Networks use "
                   "VLAN 2 where nothing else is set.",
                   "VID[:PRIORITY]");
    line.addOption("streams",
                   "Streams side by side, 1 by default: the last two bytes of the stream ID and the last one of the "
                   "destination count up. Channel c of stream n is number n * channels + c for --signal. Faults are "
                   "those of the first stream, the others show what it should be like.",
                   "N");
    line.addOption("channels", "Channels of each stream, 2 by default.", "N");
    line.addOption("format", "int16, int24, int32 or float32; int16 by default. Integers clip what exceeds full scale.",
                   "NAME");
    line.addOption("rate",
                   "Samples per second: 8000, 16000, 24000, 32000, 44100, 48000, 88200, 96000, 176400 or 192000; 48000 "
                   "by default.",
                   "HZ");
    line.addOption("samples-per-packet",
                   "Samples per channel in each frame; by default what 8000 frames a second need, 6 at 48 kHz.", "S");
    line.addOption("signal",
                   "sine:HZ:AMPLITUDE, square:HZ:AMPLITUDE, noise:AMPLITUDE, ramp (through the codes of 16 bits, "
                   "channel c is 1000 c ahead), silence or wav:FILE; full scale is 1.0. Repeated for the channels in "
                   "their order, the last one "
                   "serves all further channels. sine:1000:0.5 by default.",
                   "SPEC");
    line.addOption("seconds", "End after this time; without it and --frames only a signal ends the talker.", "T");
    line.addOption("frames", "End after this many frames.", "N");
    line.addOption("replay",
                   "Sends the frames of a capture file, pcap or pcapng, at the times that they have in it. Pauses of "
                   "more than 10 s are cut to that, and times that go back go on from there. Frames that the capture "
                   "has cut and those that the adapter doesn't take are left out and counted. Of the other options, "
                   "only --device, --seconds and --frames go with it.",
                   "FILE");
    for (const FaultOption &fault : faultOptions) {
        line.addOption(fault.name, (std::string("Fault: ") + fault.help).c_str(), fault.value);
    }
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

/// When to end: after a time, an amount of frames, or neither.
struct End {
    std::optional<double> seconds;
    std::optional<std::uint64_t> frames;
};

End end(const common::CommandLine &line) {
    const End result = {number<double>(line, "seconds", minSeconds, maxSeconds),
                        number<std::uint64_t>(line, "frames", 1, maxFrames)};
    if (result.seconds && result.frames) {
        throw common::Refusal("--seconds and --frames exclude each other");
    }
    return result;
}

std::optional<std::uint64_t> frameAmount(const common::CommandLine &line, const FrameFormat &format) {
    const auto [seconds, frames] = end(line);
    if (seconds) {
        const double samples = *seconds * format.rate;
        return static_cast<std::uint64_t>(std::max(1LL, std::llround(samples / format.samplesPerChannel)));
    }
    return frames;
}

std::string device(const common::CommandLine &line) {
    const auto name = line.single("device");
    if (!name) {
        throw common::Refusal("--device is missing: name the adapter to send on");
    }
    return *name;
}

FrameFormat frameFormat(const common::CommandLine &line) {
    FrameFormat format = {number<unsigned>(line, "channels", 1, FrameFormat::maxChannels).value_or(2), 0};
    if (const auto name = line.single("format")) {
        format.sample = FrameFormat::parseFormat(*name, "--format");
    }
    if (const auto hertz = line.single("rate")) {
        format.rate = FrameFormat::parseRate(*hertz, "--rate");
    }
    format.samplesPerChannel = number<unsigned>(line, "samples-per-packet", 1, FrameFormat::maxSamplesPerChannel)
                                   .value_or((format.rate + packetsPerSecond - 1) / packetsPerSecond);
    return format;
}

ReplayOptions replayOptions(const common::CommandLine &line, const std::string &path) {
    std::vector<const char *> others = {"source", "destination", "stream-id",          "vlan",  "streams", "channels",
                                        "format", "rate",        "samples-per-packet", "signal"};
    for (const FaultOption &fault : faultOptions) {
        others.push_back(fault.name);
    }
    for (const char *other : others) {
        if (line.has(other)) {
            throw common::Refusal("--replay and --" + std::string(other) + " exclude each other");
        }
    }
    const auto [seconds, frames] = end(line);
    ReplayOptions options = {device(line), path, frames, std::nullopt};
    if (seconds) {
        options.duration = std::chrono::nanoseconds(std::llround(*seconds * 1e9));
    }
    return options;
}

TalkerOptions talkerOptions(const common::CommandLine &line) {
    const std::string adapter = device(line);
    auto signals = line.all("signal");
    if (signals.empty()) {
        signals.emplace_back("sine:1000:0.5");
    }
    constexpr common::MacAddress streamAddress = {0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00};
    const FrameFormat format = frameFormat(line);
    const auto id = line.single("stream-id");
    const auto tag = line.single("vlan");
    TalkerOptions options = {adapter,
                             address(line, "source"),
                             address(line, "destination").value_or(streamAddress),
                             id ? std::optional(common::parseStreamId(*id, "--stream-id")) : std::nullopt,
                             tag ? std::optional(VlanTag::parse(*tag, "--vlan")) : std::nullopt,
                             number<unsigned>(line, "streams", 1, maxStreams).value_or(1),
                             format,
                             ChannelSignals(signals, format.rate),
                             frameAmount(line, format),
                             FaultPlan()};
    const unsigned more = options.streams - 1;
    const common::StreamId firstId = options.streamId.value_or(common::StreamId{});
    if (firstId[6] * 256U + firstId[7] + more > 65535 || options.destination[5] + more > 255) {
        throw common::Refusal("--streams: the last bytes of the stream ID or the destination can't count up to " +
                              std::to_string(options.streams) + " streams");
    }
    for (std::size_t i = 0; i < faultOptions.size(); ++i) {
        for (const std::string &text : line.all(faultOptions[i].name)) {
            options.faults.add(static_cast<Fault>(i), text);
        }
    }
    options.faults.check(format, options.tag.has_value());
    const FrameFormat largest = options.faults.largest(format);
    if (largest.dataLength() > FrameFormat::maxDataLength) {
        throw common::Refusal(std::to_string(largest.channels) + " channels of " +
                              std::to_string(largest.samplesPerChannel) +
                              " samples are more than an AAF frame can hold");
    }
    return options;
}

} // namespace

Command parseCommandLine(const QStringList &arguments) {
    common::CommandLine line("Sends AVTP audio streams, or the frames of a capture file.");
    addOptions(line);
    line.parse(arguments);
    if (line.has("help")) {
        return line.helpText();
    }
    if (line.has("version")) {
        return std::string("sonvex-talker " TALKER_VERSION "\n");
    }
    const auto path = line.single("replay");
    return path ? Command(replayOptions(line, *path)) : Command(talkerOptions(line));
}

} // namespace talker
