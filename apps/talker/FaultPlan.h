#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace talker {

/// What can be done to a frame on demand, with the name of its option.
enum class Fault {
    Drop,     ///< "drop": it is not sent; its sequence number and samples are used up
    Repeat,   ///< "repeat": it is sent twice in a row
    Channels, ///< "channels-at": from it on, frames carry another amount of channels
    Truncate, ///< "truncate": it is cut to this many bytes in all
    Length    ///< "length-at": it declares this many bytes of samples, everything else is as usual
};

inline constexpr std::array<const char *, 5> faultNames = {"drop", "repeat", "channels-at", "truncate", "length-at"};

/// The faults of one frame: a value for each that it has, 0 where the kind needs none.
class FrameFaults {
public:
    std::optional<unsigned> &operator[](Fault fault) { return values[static_cast<std::size_t>(fault)]; }
    const std::optional<unsigned> &operator[](Fault fault) const { return values[static_cast<std::size_t>(fault)]; }

private:
    std::array<std::optional<unsigned>, faultNames.size()> values;
};

/// All faults of a run, by the index that frames have where nothing is dropped or repeated.
class FaultPlan {
public:
    /// Adds the fault that the value of its option describes: "FRAME" for drop and repeat, "FRAME:VALUE" for the
    /// others.
    /// @throws common::Refusal for malformed text and for a fault that the frame has already
    void add(Fault fault, const std::string &text);

    /// Refuses a plan that a stream of this format cannot follow.
    void check(unsigned channels, unsigned samplesPerChannel) const;

    const FrameFaults &at(std::uint64_t frame) const;

    /// The most channels that any frame of a stream carries that starts with the given amount.
    unsigned mostChannels(unsigned channels) const;

private:
    std::map<std::uint64_t, FrameFaults> faults;
};

} // namespace talker
