#pragma once

#include <atomic>

#include "talker/CaptureFile.h"
#include "talker/RawSocket.h"
#include "talker/ReplayOptions.h"
#include "talker/ReplayReport.h"

namespace talker {

/// Sends the frames of a capture file as they are, at the times that they have in it.
class Replay {
public:
    /// Keeps references to both.
    /// @throws common::Refusal if the file has nothing to send
    Replay(const ReplayOptions &options, RawSocket &socket);

    /// Returns at the end of the file or when stop is set. To be called once.
    /// @throws std::runtime_error if a frame cannot be read or sent
    void run(const std::atomic<bool> &stop);

    /// What was done so far; valid also after run has thrown.
    const ReplayReport &getReport() const { return report; }

private:
    /// The next frame of the file, or null at its end or when stop is set.
    const CaptureFile::Frame *read(const std::atomic<bool> &stop);
    /// Whether the frame can be sent; counts it otherwise.
    bool isFit(const CaptureFile::Frame &frame);

    const ReplayOptions &options;
    RawSocket &socket;
    CaptureFile file;
    ReplayReport report;
};

} // namespace talker
