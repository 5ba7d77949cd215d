#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "talker/FrameFormat.h"

namespace talker {

/// What can be done to a frame on demand.
enum class Fault {
    Drop,
    Repeat,
    Channels,
    Format,
    Rate,
    Restart,
    Truncate,
    Length,
    Uncertain,
    Untimed,
    Invalid,
    NonFinite
};

/// How a fault is asked for.
struct FaultOption {
    const char *name;
    const char *value; ///< K stands for the frame, what follows a colon for the fault's value
    bool lasts;        ///< it changes all frames that follow, too, even if frame K itself is dropped
    const char *help;
};

/// In the order of Fault.
inline constexpr std::array<FaultOption, 12> faultOptions = {
    {{"drop", "K", false, "frame K, counted from 0, is not sent. All faults can be repeated."},
     {"repeat", "K", false, "frame K is sent twice."},
     {"channels-at", "K:N", true, "from frame K on there are N channels."},
     {"format-at", "K:NAME", true, "from frame K on samples have this format."},
     {"rate-at", "K:HZ", true, "from frame K on frames declare this rate. They are sent as before."},
     {"restart-at", "K", true, "from frame K on the media clock restart bit has its other value."},
     {"truncate", "K:BYTES", false, "frame K is cut to so many bytes in all."},
     {"length-at", "K:BYTES", false, "frame K declares so many bytes of samples."},
     {"uncertain", "K", false, "frame K says that its timestamp is uncertain."},
     {"untimed", "K", false, "frame K says that its timestamp is not valid."},
     {"invalid", "K", false, "frame K says that its stream ID is not valid."},
     {"non-finite", "K", false,
      "in frame K, which has to be float32, the last sample of each channel is +infinity, and the first one NaN."}}};

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
    void check(FrameFormat format, bool tagged) const;

    const FrameFaults &at(std::uint64_t frame) const;

    /// The format of the largest frames of a stream that starts with this one.
    FrameFormat largest(FrameFormat format) const;

private:
    std::map<std::uint64_t, FrameFaults> faults;
};

} // namespace talker
