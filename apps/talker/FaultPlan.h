#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "talker/FrameFormat.h"

namespace talker {

/// What can be done to a frame on demand.
enum class Fault { Drop, Repeat, Channels, Truncate, Length };

/// How a fault is asked for.
struct FaultOption {
    const char *name;
    const char *value; ///< K stands for the frame, what follows a colon for the fault's value
    const char *help;
};

/// In the order of Fault.
inline constexpr std::array<FaultOption, 5> faultOptions = {
    {{"drop", "K", "frame K, counted from 0, is not sent. All faults can be repeated."},
     {"repeat", "K", "frame K is sent twice."},
     {"channels-at", "K:N", "from frame K on there are N channels."},
     {"truncate", "K:BYTES", "frame K is cut to so many bytes in all."},
     {"length-at", "K:BYTES", "frame K declares so many bytes of samples."}}};

/// The faults of one frame: a value for each that it has, 0 where the kind needs none.
class FrameFaults {
public:
    std::optional<unsigned> &operator[](Fault fault) { return values[static_cast<std::size_t>(fault)]; }
    const std::optional<unsigned> &operator[](Fault fault) const { return values[static_cast<std::size_t>(fault)]; }

    /// The format that the frame has where the one before has this.
    FrameFormat apply(FrameFormat format) const;

private:
    std::array<std::optional<unsigned>, faultOptions.size()> values;
};

/// All faults of a run, by the index that frames have where nothing is dropped or repeated.
class FaultPlan {
public:
    /// Adds the fault that the value of its option describes.
    /// @throws common::Refusal for malformed text and for a fault that the frame has already
    void add(Fault fault, const std::string &text);

    /// Refuses a plan that a stream of this format cannot follow.
    void check(FrameFormat format) const;

    const FrameFaults &at(std::uint64_t frame) const;

    /// The format of the largest frames of a stream that starts with this one.
    FrameFormat largest(FrameFormat format) const;

private:
    std::map<std::uint64_t, FrameFaults> faults;
};

} // namespace talker
