#include "analyser/StreamTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "common/Text.h"
#include "common/oneLine.h"

namespace analyser {

using discovery::Findings;
using discovery::Offer;
using discovery::WireStream;

namespace {

constexpr std::size_t mostRows = 40;
constexpr std::size_t columns = 118;
constexpr char indent[] = "    ";

using Row = std::vector<std::string>;

std::string shown(const common::MacAddress &address) {
    std::string text = common::toString(address);
    for (std::size_t at = 2; at < text.size(); at += 3) {
        text.insert(at, 1, ':');
    }
    return text;
}

std::string shown(const std::optional<discovery::VlanTag> &tag) {
    return tag ? std::to_string(tag->id) + '/' + std::to_string(tag->priority) : "-";
}

std::string shownFormat(const discovery::StreamFormat &format) {
    const auto *known = format.samples();
    const bool isPadded = known != nullptr && format.bitDepth && *format.bitDepth != 8 * known->bytes;
    return format.name() + (isPadded ? '/' + std::to_string(*format.bitDepth) : "");
}

std::string shownSamples(const std::optional<WireStream::Samples> &samples) {
    if (!samples) {
        return "-";
    }
    return std::to_string(samples->least) +
           (samples->least != samples->greatest ? '-' + std::to_string(samples->greatest) : "");
}

std::string shownPpm(const std::optional<double> &ppm, int decimals) {
    if (!ppm) {
        return "-";
    }
    const std::string text = text::fixed(std::abs(*ppm), decimals);
    const bool isZero = text.find_first_not_of("0.") == std::string::npos;
    return (isZero ? "" : *ppm < 0 ? "-" : "+") + text;
}

std::string milliseconds(double seconds) {
    return text::fixed(1000 * seconds, 3);
}

Row rowOf(const WireStream &stream) {
    const auto &format = stream.format;
    return {stream.id ? common::toString(*stream.id) : "none",
            shownFormat(format),
            format.rate ? text::number(*format.rate / 1000) + " kHz" : "-",
            format.channels ? std::to_string(*format.channels) : "-",
            shownSamples(stream.samples),
            stream.framesPerSecond ? text::fixed(*stream.framesPerSecond, 1) : "-",
            std::to_string(stream.framesLost),
            shownPpm(stream.timestampPpm, 1),
            shown(stream.tag),
            shown(stream.source)};
}

/// What is worth a word about a stream, beside its row.
std::vector<std::string> notesOn(const WireStream &stream, double heard) {
    std::vector<std::string> notes{"to " + shown(stream.destination)};
    const auto note = [&notes](bool applies, const std::string &text) {
        if (applies) {
            notes.push_back(text);
        }
    };
    const auto count = [](std::uint64_t amount, const std::string &noun) { return text::counted(amount, noun); };
    if (const auto &distance = stream.arrivalDistance) {
        note(true, "frames " + milliseconds(distance->least) + " to " + milliseconds(distance->greatest) +
                       " ms apart, mean " + milliseconds(distance->mean) + " ms");
    }
    constexpr double wrongRate = 10000; // ppm, far beyond any clock
    const double arrivalPpm = stream.arrivalPpm.value_or(0);
    note(stream.arrivalPpm && std::abs(arrivalPpm) < wrongRate, "rate by arrivals " + shownPpm(arrivalPpm, 0) + " ppm");
    note(std::abs(arrivalPpm) >= wrongRate, "brings " + text::fixed(1 + arrivalPpm * 1e-6, 2) +
                                                " times the samples of its rate (redundant ones, or another rate)");
    note(stream.gaps > 0, count(stream.gaps, "gap") + " with at least " + count(stream.framesLost, "lost frame"));
    note(stream.framesOutOfOrder > 0, count(stream.framesOutOfOrder, "frame") + " late, repeated or numbered anew");
    note(stream.framesCutShort > 0, count(stream.framesCutShort, "frame") + " shorter than declared");
    note(stream.format.rate && stream.timestampsValid == 0, "no valid time stamp");
    note(stream.timestampsUncertain > 0, count(stream.timestampsUncertain, "frame") + " of uncertain time");
    note(stream.clockRestarts > 0, count(stream.clockRestarts, "restart") + " of the media clock");
    note(stream.timestampLeaps > 0, count(stream.timestampLeaps, "leap") + " of the time stamps");
    note(stream.formatChanges > 0, count(stream.formatChanges, "change") + " of the format");
    note(stream.addressChanges > 0,
         count(stream.addressChanges, "change") + " of source, destination or tag (do two talkers use this ID?)");
    const double pause = std::max(0.5, 10 * (stream.arrivalDistance ? stream.arrivalDistance->mean : 0));
    note(stream.firstHeard > pause, "began after " + text::fixed(stream.firstHeard, 1) + " s");
    note(heard - stream.lastHeard > pause, "silent for the last " + text::fixed(heard - stream.lastHeard, 1) + " s");
    note(stream.obstacle.empty() && !stream.id, "without a valid ID: found by its source alone");
    note(stream.obstacle.empty() && !stream.hasSoundLevels, "no sound levels: they need 48 kHz");
    return notes;
}

void appendWrapped(std::string &text, const std::string &line) {
    for (const std::string &part : text::wrapped(line, columns - sizeof indent)) {
        text += indent + part + '\n';
    }
}

std::string joined(const std::vector<std::string> &parts, const char *separator) {
    std::string text;
    for (const std::string &part : parts) {
        text += (text.empty() ? "" : separator) + part;
    }
    return text;
}

/// Texts to the left, numbers to the right.
std::string line(const Row &row, const std::vector<std::size_t> &widths) {
    constexpr std::size_t firstNumber = 2;
    constexpr std::size_t lastNumber = 7;
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string blanks(widths[i] - row[i].size(), ' ');
        const bool isNumber = i >= firstNumber && i <= lastNumber;
        text += (i > 0 ? "  " : "") + (isNumber ? blanks + row[i] : row[i] + blanks);
    }
    return text.substr(0, text.find_last_not_of(' ') + 1) + '\n';
}

/// Those with the most frames, in the order of the list.
std::vector<const WireStream *> chosen(const std::vector<WireStream> &streams) {
    std::vector<const WireStream *> chosen;
    chosen.reserve(streams.size());
    for (const WireStream &stream : streams) {
        chosen.push_back(&stream);
    }
    if (chosen.size() > mostRows) {
        std::stable_sort(chosen.begin(), chosen.end(),
                         [](auto one, auto other) { return one->frames > other->frames; });
        chosen.resize(mostRows);
        std::sort(chosen.begin(), chosen.end()); // places in one vector
    }
    return chosen;
}

void appendStreams(std::string &text, const Findings &findings) {
    const auto streams = chosen(findings.streams);
    std::vector<Row> rows{
        {"STREAM ID", "FORMAT", "RATE", "CH", "SAMPLES", "FRAMES/S", "LOST", "CLOCK ppm", "VLAN/PRIO", "SOURCE"}};
    for (const WireStream *stream : streams) {
        rows.push_back(rowOf(*stream));
    }
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    text += line(rows.front(), widths);
    for (std::size_t i = 0; i < streams.size(); ++i) {
        const WireStream &stream = *streams[i];
        text += line(rows[i + 1], widths);
        appendWrapped(text, joined(notesOn(stream, findings.seconds), "; "));
        if (stream.obstacle.empty()) {
            text += indent + ("--stream " + stream.argument) + '\n'; // in one piece
        } else {
            appendWrapped(text, "cannot be monitored: " + stream.obstacle);
        }
    }
    const std::size_t more = findings.streams.size() - streams.size();
    if (more > 0) {
        text += "and " + text::counted(more, "more stream") + " with fewer frames; --format json lists them\n";
    }
    if (findings.streamsBeyond > 0) {
        text +=
            "and at least " + text::counted(findings.streamsBeyond, "more stream") + ", too many to be told apart\n";
    }
}

void appendOffers(std::string &text, const Findings &findings) {
    std::size_t missing = 0;
    for (const Offer &offer : findings.offers) {
        missing += offer.isDelivered ? 0 : 1;
    }
    if (missing == 0) {
        return;
    }
    text += "offered but not delivered here:\n";
    std::size_t shownOffers = 0;
    for (const Offer &offer : findings.offers) {
        if (offer.isDelivered || shownOffers >= mostRows) {
            continue;
        }
        ++shownOffers;
        text += common::toString(offer.id) + "  to " + shown(offer.destination) + ", VLAN " +
                std::to_string(offer.vlan) + ", priority " + std::to_string(offer.priority) + ", " +
                text::counted(offer.maxIntervalFrames, "frame") + " of up to " +
                text::counted(offer.maxFrameSize, "byte") + " an interval\n";
        appendWrapped(text, offer.failureCode ? "failed: " + discovery::describeFailure(*offer.failureCode) +
                                                    " (code " + std::to_string(*offer.failureCode) + ')'
                                              : "ready; it comes where a listener asks for it");
    }
    if (missing > shownOffers) {
        text += "and " + text::counted(missing - shownOffers, "more offer") + "; --format json lists them\n";
    }
}

/// What it means that no stream was heard.
void appendSilence(std::string &text, const Findings &findings) {
    text += "No stream reaches this adapter. ";
    if (findings.frames.reservations == 0 && findings.frames.control == 0) {
        text += "Nothing else of an AVB network does, either: is this the right adapter?\n";
    } else {
        text += "But it is on an AVB network.\n";
    }
    for (const std::string &line : text::wrapped(
             "A switch forwards a reserved stream only to ports that have asked for it, and a talker that nobody "
             "listens to sends nothing. To hear a stream, take a mirror port of a switch that it passes, a tap in a "
             "cable that it passes, or an adapter of a device that is a listener of it.",
             columns)) {
        text += line + '\n';
    }
}

} // namespace

std::string streamTable(const Findings &findings, const std::string &device) {
    const auto &frames = findings.frames;
    std::string text = "heard at " + common::oneLine(device) + " in " + text::fixed(findings.seconds, 1) +
                       " s: " + text::counted(findings.streams.size() + findings.streamsBeyond, "stream") + ", " +
                       text::counted(frames.avtp, "AVTP frame") + " (" + std::to_string(frames.control) +
                       " of control), " + text::counted(frames.reservations, "reservation frame") + '\n';
    const std::uint64_t unread = frames.severalTags + frames.incomplete + frames.otherVersion;
    if (unread > 0) {
        text += "not read: " + text::counted(frames.severalTags, "frame") + " with more than one VLAN tag, " +
                std::to_string(frames.incomplete) + " incomplete, " + std::to_string(frames.otherVersion) +
                " of another AVTP version\n";
    }
    if (findings.kernelDrops > 0) {
        text += "this machine dropped " + text::counted(findings.kernelDrops, "frame") +
                " itself, so gaps may be its own and not the network's\n";
    }
    if (findings.streams.empty()) {
        appendSilence(text, findings);
    } else {
        appendStreams(text, findings);
    }
    appendOffers(text, findings);
    return text;
}

} // namespace analyser
