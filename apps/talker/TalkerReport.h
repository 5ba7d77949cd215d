#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "talker/FaultPlan.h"

namespace talker {

/// What a talker has done.
struct TalkerReport {
    std::uint64_t framesSent = 0;
    std::uint64_t samplesPerChannel = 0; ///< of the signal, those of dropped frames included, repetitions not
    std::array<std::uint64_t, faultOptions.size()> faults = {};
    std::chrono::nanoseconds elapsed = {};
    std::chrono::nanoseconds packetInterval = {};
    std::chrono::nanoseconds worstLateness = {};
    std::uint64_t lateFrames = 0; ///< late by more than a packet interval

    /// Counts the faults of a frame, those that came true.
    void note(const FrameFaults &ofFrame);

    std::string toString() const;
};

} // namespace talker
