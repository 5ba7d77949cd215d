#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

#include "monitoring/analyses/Settings.h"

namespace sonvex {
class IStreamFacts;
} // namespace sonvex

namespace monitoring {

/// Where results lie in their stream, by what is known of its reception: a result itself has neither time nor place.
/// Positions count the samples of a channel that were taken since the start.
class Timeline {
public:
    /// @param memory samples that gaps are remembered for
    Timeline(const sonvex::IStreamFacts &facts, const StreamSettings &stream, std::uint64_t memory);

    /// Takes over what is known by now. What was lost lies between this and the call before.
    void update();
    /// At the latest update.
    std::uint64_t end() const { return position; }
    /// Nothing before the first frame.
    std::optional<std::chrono::system_clock::time_point> timeOf(std::uint64_t sample) const;
    /// Whether samples were lost behind @p first and up to @p last.
    bool hasGap(std::uint64_t first, std::uint64_t last) const;

private:
    void readAmount();
    std::uint64_t positionAt(std::uint64_t framesTaken) const;

    struct Gap {
        std::uint64_t after;
        std::uint64_t before;
    };

    const sonvex::IStreamFacts &facts;
    unsigned samplesPerPacket;
    const bool amountIsDeclared; ///< by each frame
    const double sampleRate;     ///< Hz
    const std::uint64_t memory;
    std::uint64_t position = 0;
    std::uint64_t frames = 0; ///< taken until there
    std::uint64_t losses = 0;
    std::uint64_t atLosses = 0;          ///< the position right before the losses were read
    std::chrono::microseconds newest{0}; ///< when the frame that ends there was captured
    std::deque<Gap> gaps;
};

} // namespace monitoring
