#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace talker {

/// What became of the frames of a capture file.
struct ReplayReport {
    std::uint64_t framesSent = 0;
    std::uint64_t cut = 0;      ///< not sent, as the capture has only a part of them
    std::uint64_t tooLong = 0;  ///< not sent, as the adapter doesn't take them
    std::uint64_t tooShort = 0; ///< not sent, as they are no Ethernet frames
    unsigned jumps = 0;         ///< of the times, which were left out
    std::chrono::nanoseconds elapsed = {};
    std::chrono::nanoseconds worstLateness = {};

    std::string toString() const;
};

} // namespace talker
