#pragma once

#include <atomic>
#include <cstdint>

#include "talker/AafFrame.h"
#include "talker/Pacer.h"
#include "talker/RawSocket.h"
#include "talker/TalkerOptions.h"
#include "talker/TalkerReport.h"

namespace talker {

/// Sends a stream in real time, with the faults that were asked for.
class Talker {
public:
    /// Keeps references to both.
    /// @throws common::Refusal if the adapter cannot carry the stream
    Talker(const TalkerOptions &options, RawSocket &socket);

    /// Returns at the end of the stream or when stop is set. Allocates nothing. To be called once.
    /// @throws std::system_error if a frame cannot be sent
    void run(const std::atomic<bool> &stop);

    /// What was done so far; valid also after run has thrown.
    const TalkerReport &getReport() const { return report; }

private:
    void prepare(std::uint64_t number, const FrameFaults &faults);
    void send(const FrameFaults &faults);
    void noteLateness(Pacer::Duration lateness);
    void noteFault(Fault fault) { ++report.faults[static_cast<std::size_t>(fault)]; }

    const TalkerOptions &options;
    RawSocket &socket;
    AafFrame frame;
    Pacer::Duration presentationStart = {}; ///< presentation time of sample 0
    TalkerReport report;
};

} // namespace talker
