#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "talker/AafFrame.h"
#include "talker/Pacer.h"
#include "talker/RawSocket.h"
#include "talker/TalkerOptions.h"
#include "talker/TalkerReport.h"

namespace talker {

/// Sends streams in real time, the first one with the faults that were asked for.
class Talker {
public:
    /// Keeps references to both.
    /// @throws common::Refusal if the adapter cannot carry the streams
    Talker(const TalkerOptions &options, RawSocket &socket);

    /// Returns at the end of the streams or when stop is set. Allocates nothing. To be called once.
    /// @throws std::system_error if a frame cannot be sent
    void run(const std::atomic<bool> &stop);

    /// What was done so far; valid also after run has thrown.
    const TalkerReport &getReport() const { return report; }

private:
    void prepare(std::uint64_t number, const FrameFaults &faults);
    void applyFaults(const FrameFaults &faults);
    /// Gathers the frames of all streams and sends them.
    void send(const FrameFaults &faults);
    void noteLateness(Pacer::Duration lateness);

    const TalkerOptions &options;
    RawSocket &socket;
    std::vector<AafFrame> frames; ///< one a stream
    FrameBatch batch;
    Pacer::Duration presentationStart = {}; ///< presentation time of sample 0
    TalkerReport report;
};

} // namespace talker
