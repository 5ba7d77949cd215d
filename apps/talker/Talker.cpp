#include "talker/Talker.h"

#include <algorithm>
#include <ctime>
#include <limits>

#include "common/Refusal.h"
#include "talker/sampleTime.h"

namespace talker {

namespace {

/// Listeners get this long to receive a frame before they play it.
constexpr auto transitTime = std::chrono::milliseconds(2);

common::MacAddress sourceAddress(const TalkerOptions &options, const RawSocket &socket) {
    const common::MacAddress address = options.source.value_or(socket.getAddress());
    if (!options.source && address == common::MacAddress{}) {
        throw common::Refusal("adapter '" + socket.getDevice() + "' has no address of its own: give one with --source");
    }
    return address;
}

common::StreamId streamId(const TalkerOptions &options, const common::MacAddress &source, unsigned stream) {
    common::StreamId id = {};
    std::copy(source.begin(), source.end(), id.begin());
    id = options.streamId.value_or(id);
    const unsigned unique = id[6] * 256U + id[7] + stream;
    id[6] = static_cast<std::uint8_t>(unique >> 8);
    id[7] = static_cast<std::uint8_t>(unique);
    return id;
}

} // namespace

Talker::Talker(const TalkerOptions &options, RawSocket &socket)
    : options(options), socket(socket), batch(options.streams + 1U) {
    const common::MacAddress source = sourceAddress(options, socket);
    for (unsigned stream = 0; stream < options.streams; ++stream) {
        common::MacAddress destination = options.destination;
        destination[5] = static_cast<std::uint8_t>(destination[5] + stream);
        frames.emplace_back(source, destination, options.format);
        frames.back().setStreamId(streamId(options, source, stream));
        if (options.tag) {
            frames.back().setTag(*options.tag);
        }
    }
    const FrameFormat largest = options.faults.largest(options.format);
    const std::size_t needed = AafFrame::headerSize - AafFrame::ethernetHeaderSize + largest.dataLength();
    if (needed > socket.getMtu(options.tag.has_value())) {
        throw common::Refusal(std::to_string(largest.channels) + " channels of " +
                              std::to_string(largest.samplesPerChannel) + " samples need frames of " +
                              std::to_string(needed) + " bytes, adapter '" + socket.getDevice() + "' takes " +
                              std::to_string(socket.getMtu(options.tag.has_value())));
    }
    report.packetInterval = sampleTime(options.format.samplesPerChannel, options.format.rate);
}

void Talker::run(const std::atomic<bool> &stop) {
    timespec now = {};
    clock_gettime(CLOCK_TAI, &now);
    presentationStart = std::chrono::seconds(now.tv_sec) + Pacer::Duration(now.tv_nsec) + transitTime;
    const Pacer pacer;

    for (std::uint64_t i = 0; !options.frames || i < *options.frames; ++i) {
        const FrameFaults &faults = options.faults.at(i);
        prepare(i, faults);
        const Pacer::Duration due = sampleTime(i * options.format.samplesPerChannel, options.format.rate);
        if (!pacer.waitUntil(due, stop)) {
            break;
        }
        send(faults);
        if (batch.size() > 0) {
            noteLateness(pacer.elapsed() - due);
        }
        report.samplesPerChannel += options.format.samplesPerChannel;
        report.elapsed = pacer.elapsed();
    }
}

void Talker::prepare(std::uint64_t number, const FrameFaults &faults) {
    frames.front().setFormat(faults.apply(frames.front().getFormat()));
    const std::uint64_t firstSample = number * options.format.samplesPerChannel;
    const Pacer::Duration presentation = presentationStart + sampleTime(firstSample, options.format.rate);
    unsigned firstChannel = 0;
    for (AafFrame &frame : frames) {
        frame.setSequence(static_cast<std::uint8_t>(number));
        frame.setTimestamp(static_cast<std::uint32_t>(presentation.count()));
        options.signals.fill(frame, firstSample, firstChannel);
        firstChannel += options.format.channels;
    }
    applyFaults(faults);
}

void Talker::applyFaults(const FrameFaults &faults) {
    AafFrame &frame = frames.front();
    if (faults[Fault::Restart]) {
        frame.toggleClockRestart();
    }
    frame.setTimestampUncertain(faults[Fault::Uncertain].has_value());
    frame.setTimestampValid(!faults[Fault::Untimed]);
    frame.setStreamValid(!faults[Fault::Invalid]);
    for (unsigned channel = 0; faults[Fault::NonFinite] && channel < frame.getFormat().channels; ++channel) {
        using Limits = std::numeric_limits<double>;
        frame.setSample(frame.getFormat().samplesPerChannel - 1, channel, Limits::infinity());
        frame.setSample(0, channel, Limits::quiet_NaN());
    }
    if (faults[Fault::Length]) {
        frame.setDataLength(static_cast<std::uint16_t>(*faults[Fault::Length]));
    }
}

void Talker::send(const FrameFaults &faults) {
    batch.clear();
    const AafFrame &faulty = frames.front();
    for (int i = faults[Fault::Drop] ? 0 : faults[Fault::Repeat] ? 2 : 1; i > 0; --i) {
        batch.add(faulty.data(), faults[Fault::Truncate].value_or(static_cast<unsigned>(faulty.size())));
    }
    for (std::size_t stream = 1; stream < frames.size(); ++stream) {
        batch.add(frames[stream].data(), frames[stream].size());
    }
    socket.send(batch, report.framesSent);
    report.note(faults);
}

void Talker::noteLateness(Pacer::Duration lateness) {
    report.worstLateness = std::max(report.worstLateness, lateness);
    if (lateness > report.packetInterval) {
        report.lateFrames += batch.size();
    }
}

} // namespace talker
