#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>

#include <sonvex/IStreamFacts.h>

#include "core/facts/Fact.h"

namespace facts {

/// What a frame says of its time.
struct FrameTimes {
    std::int64_t captured;      ///< microseconds since 1970
    std::uint32_t presentation; ///< nanoseconds, modulo 2^32
    bool valid;                 ///< the presentation time
    bool uncertain;             ///< the presentation time
    bool restart;               ///< changes with each restart of the media clock
};

/**
 * When the frames of a stream came and when they are to be played, in steps of twenty milliseconds: all that a frame
 * does is to be counted and compared, a step leaves a record, and what they imply is computed where it is asked for.
 *
 * Threads: a capture's thread writes, one at a time; evaluate() on any. begin() before the first frame.
 */
class ClockHistory {
public:
    void begin();

    void arrived(const FrameTimes &times) {
        distance = times.captured - latest;
        latest = times.captured;
        ++position;
        arrivals.add(1);
        if (distance < least) {
            least = distance;
            if (distance < 0) { // the clock that stamps frames was set back
                startAnew();
            }
        }
        if (distance > greatest) {
            greatest = distance;
            breaks = breaks || distance > longestPause;
        }
        if (!times.valid || times.uncertain || times.restart != latestRestart) {
            noteMarks(times.valid, times.uncertain, times.restart);
        }
        if (latest >= nextRecord && (times.valid || latest >= nextRecord + longestWait)) {
            record(times.presentation, times.valid);
        }
    }
    /// The newest frame is so many numbers ahead of where it would have been; -1 for one that came before.
    void skipped(int frames);
    /// Other frames come from the newest one on: nothing before it counts any more.
    void forget();

    /// @param samples of each channel in a frame; 0 if that is not known
    /// @param nominalRate in Hz
    sonvex::StreamClock evaluate(unsigned int samples, int nominalRate) const;

private:
    static constexpr std::int64_t recordDistance = 20'000;  // microseconds
    static constexpr std::int64_t longestWait = 10'000;     // for a valid presentation time
    static constexpr std::int64_t longestPause = 1'000'000; // beyond it the stream was interrupted
    static constexpr std::size_t capacity = 512;            // more than ten seconds

    /// As it is kept: the writer may be at it while somebody reads.
    struct Record {
        std::atomic<std::int64_t> captured{0};
        std::atomic<std::uint64_t> counts{0};    ///< position and arrivals, modulo 2^32
        std::atomic<std::uint64_t> playing{0};   ///< presentation time, Mark
        std::atomic<std::uint64_t> distances{0}; ///< least and greatest since the record before, in microseconds
    };
    enum Mark : std::uint32_t { Valid = 1, Break = 2 };

    struct Step {
        std::int64_t captured;
        std::uint32_t position;
        std::uint32_t arrivals;
        std::uint32_t presentation;
        std::uint32_t marks;
        std::uint32_t least;
        std::uint32_t greatest;
    };

    /// With the next frame.
    void startAnew() {
        breaks = true;
        nextRecord = std::numeric_limits<std::int64_t>::min();
    }
    void noteMarks(bool valid, bool isUncertain, bool restart);
    void record(std::uint32_t presentation, bool valid);
    std::size_t copySteps(std::array<Step, capacity> &steps) const;

    // Of the capture.
    std::int64_t latest = 0;
    std::int64_t distance = 0; ///< of the newest frame
    std::int64_t least = 0;
    std::int64_t greatest = 0;
    std::int64_t nextRecord = 0;
    std::uint32_t position = 0; ///< by the sequence
    bool latestRestart = false;
    bool breaks = true; ///< the next record does not go on from the one before
    bool first = true;  ///< no frame has come

    Fact<std::uint64_t> arrivals;
    Fact<std::uint64_t> untimed;
    Fact<std::uint64_t> uncertain;
    Fact<std::uint64_t> restarts;
    Fact<std::uint64_t> firstKept; ///< index of the first record that counts
    Fact<std::uint64_t> recorded;  ///< index behind the newest record
    std::array<Record, capacity> records;
};

} // namespace facts
