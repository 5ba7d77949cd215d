#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <sonvex/IStreamFacts.h>

#include "monitoring/AdapterLink.h"
#include "monitoring/analyses/Analysis.h"

namespace monitoring {

/// What the newest frame of a stream says that it holds; -1 where it is too short to, and before the first one.
struct Declaration {
    int format = -1; ///< its code
    int channels = -1;
    int dataLength = -1; ///< bytes
    int sampleRate = -1; ///< Hz; 0 for any
};

/// What has become of a stream's frames since the start.
struct StreamStatus {
    std::string key;
    bool seen = false; ///< has any frame come
    Declaration declared;
    std::uint64_t taken = 0;
    std::uint64_t gaps = 0;
    std::uint64_t lost = 0;
    std::uint64_t repeated = 0;
    std::uint64_t refusedChannelAmount = 0;
    std::uint64_t refusedDataLength = 0;
    std::uint64_t refusedIncomplete = 0; ///< cut short, in the header or in the samples
    std::uint64_t refusedFormat = 0;
    std::uint64_t refusedSampleRate = 0;
    std::uint64_t nonFiniteSamples = 0;
    std::string streamId;  ///< 16 digits; empty before a valid one
    int vlanId = -1;       ///< -1 without a tag
    int vlanPriority = -1; ///< so is this
    sonvex::StreamClock clock;

    std::uint64_t framesRefused() const {
        return refusedChannelAmount + refusedDataLength + refusedIncomplete + refusedFormat + refusedSampleRate;
    }
};

struct AdapterStatus {
    AdapterLink::State link = AdapterLink::State::up;
    std::string endReason; ///< of a capture that has ended by itself
    std::uint64_t seen = 0;
    std::uint64_t ofNoStream = 0;
    std::uint64_t kernelDrops = 0;
};

struct AnalysisStatus {
    enum class State { waiting, running, silent };

    std::shared_ptr<const Analysis> analysis;
    std::uint64_t results = 0;
    /// Since the status before.
    double resultsPerSecond = 0.0;
    State state = State::waiting;
};

/// Something that stands in the way of results.
struct Condition {
    enum class Cause {
        adapterGone,
        adapterDown,
        noLink,
        captureEnded,
        wrongChannelAmount, ///< frames are refused for it
        wrongDataLength,
        wrongFormat,
        wrongSampleRate,
        incompleteFrames,
        channelAbsent, ///< the frames have fewer channels
        framesLost,
        noResults, ///< although frames are taken
        streamEnded,
        streamUnseen
    };

    Cause cause = Cause::streamUnseen;
    std::string stream{}; ///< empty for the adapter
    /// Those that give no results; empty if results come, but lack samples.
    std::vector<unsigned> channels{};
    std::uint64_t amount = 0; ///< of the frames so far that the cause counts
    Declaration declared{};
    std::string reason{}; ///< the system's, for captureEnded

    /// Whether results don't come at all.
    bool isSilence() const { return stream.empty() || !channels.empty(); }
    /// Whether it is the same as one before, whatever its figures are now.
    bool continues(const Condition &other) const {
        return cause == other.cause && stream == other.stream && channels == other.channels;
    }
};

/// How a session is doing at one moment.
struct Status {
    /// Since the captures were started.
    double seconds = 0.0;
    std::vector<AnalysisStatus> analyses;
    std::vector<StreamStatus> streams;
    AdapterStatus adapter;
    std::uint64_t messages = 0;
    /// Empty while all is well.
    std::vector<Condition> conditions;
};

} // namespace monitoring
