#include "talker/Talker.h"

#include <algorithm>
#include <ctime>

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

} // namespace

Talker::Talker(const TalkerOptions &options, RawSocket &socket)
    : options(options), socket(socket), frame(sourceAddress(options, socket), options.destination, options.format) {
    const FrameFormat largest = options.faults.largest(options.format);
    const std::size_t needed = AafFrame::headerSize - AafFrame::ethernetHeaderSize + largest.dataLength();
    if (needed > socket.getMtu()) {
        throw common::Refusal(std::to_string(largest.channels) + " channels of " +
                              std::to_string(largest.samplesPerChannel) + " samples need frames of " +
                              std::to_string(needed) + " bytes, adapter '" + socket.getDevice() + "' takes " +
                              std::to_string(socket.getMtu()));
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
        if (faults[Fault::Drop]) {
            noteFault(Fault::Drop);
        } else {
            send(faults);
            noteLateness(pacer.elapsed() - due);
        }
        report.samplesPerChannel += options.format.samplesPerChannel;
        report.elapsed = pacer.elapsed();
    }
}

void Talker::prepare(std::uint64_t number, const FrameFaults &faults) {
    if (faults[Fault::Channels]) {
        noteFault(Fault::Channels);
    }
    frame.setFormat(faults.apply(frame.getFormat()));
    frame.setSequence(static_cast<std::uint8_t>(number));
    const std::uint64_t firstSample = number * options.format.samplesPerChannel;
    frame.setTimestamp(
        static_cast<std::uint32_t>((presentationStart + sampleTime(firstSample, options.format.rate)).count()));
    options.signals.fill(frame, firstSample);
    if (faults[Fault::Length]) {
        frame.setDataLength(static_cast<std::uint16_t>(*faults[Fault::Length]));
    }
}

void Talker::send(const FrameFaults &faults) {
    const std::size_t size = faults[Fault::Truncate].value_or(static_cast<unsigned>(frame.size()));
    const int times = faults[Fault::Repeat] ? 2 : 1;
    for (int i = 0; i < times; ++i) {
        socket.send(frame.data(), size);
        ++report.framesSent;
    }
    for (const Fault fault : {Fault::Repeat, Fault::Truncate, Fault::Length}) {
        if (faults[fault]) {
            noteFault(fault);
        }
    }
}

void Talker::noteLateness(Pacer::Duration lateness) {
    report.worstLateness = std::max(report.worstLateness, lateness);
    if (lateness > report.packetInterval) {
        ++report.lateFrames;
    }
}

} // namespace talker
