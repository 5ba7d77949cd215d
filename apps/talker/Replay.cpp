#include "talker/Replay.h"

#include <algorithm>
#include <stdexcept>

#include "talker/AafFrame.h"
#include "talker/Pacer.h"
#include "talker/ReplayTimeline.h"

namespace talker {

Replay::Replay(const ReplayOptions &options, RawSocket &socket)
    : options(options), socket(socket), file(options.path) {}

void Replay::run(const std::atomic<bool> &stop) {
    const Pacer pacer;
    ReplayTimeline timeline;
    while (!options.frames || report.framesSent < *options.frames) {
        const CaptureFile::Frame *const frame = read(stop);
        if (frame == nullptr) {
            break;
        }
        if (!isFit(*frame)) {
            continue;
        }
        const Pacer::Duration due = timeline.next(frame->time);
        report.jumps = timeline.getJumps();
        if (options.duration && due >= *options.duration) {
            break;
        }
        if (!pacer.waitUntil(due, stop)) {
            break;
        }
        socket.send(frame->bytes, frame->size);
        ++report.framesSent;
        report.elapsed = pacer.elapsed();
        report.worstLateness = std::max(report.worstLateness, report.elapsed - due);
    }
}

const CaptureFile::Frame *Replay::read(const std::atomic<bool> &stop) {
    try {
        return stop ? nullptr : file.next();
    } catch (const std::runtime_error &) {
        if (stop) { // by a signal that interrupted the reading of a pipe
            return nullptr;
        }
        throw;
    }
}

bool Replay::isFit(const CaptureFile::Frame &frame) {
    if (!frame.isComplete) {
        ++report.cut;
    } else if (frame.size < AafFrame::ethernetHeaderSize) {
        ++report.tooShort;
    } else if (!socket.takes(frame.bytes, frame.size)) {
        ++report.tooLong;
    } else {
        return true;
    }
    return false;
}

} // namespace talker
