#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/AafFormat.h"

namespace discovery {

/// What the frames of a stream say that they carry.
struct StreamFormat {
    enum class Kind { aaf, iec61883, clockReference, other };

    Kind kind = Kind::other;
    std::uint8_t subtype = 0;
    /// Of AAF: the format of its samples. Of IEC 61883: what is in its packets. Of a clock reference: its type.
    std::uint8_t code = 0;
    std::optional<unsigned> bitDepth;
    std::optional<double> rate; ///< nominal, Hz; of a clock reference that of the clock; none if the frames name none
    std::optional<unsigned> channels;
    bool sparseTimestamps = false;

    /// How the samples lie in the frames; null for what is not AAF, or in none of the formats that the programs know.
    const common::AafFormat *samples() const;
    /// "AAF int16", "IEC 61883-6", "subtype 7".
    std::string name() const;

    bool operator==(const StreamFormat &other) const;
    bool operator!=(const StreamFormat &other) const { return !(*this == other); }
};

} // namespace discovery
