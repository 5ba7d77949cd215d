#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "discovery/Offer.h"
#include "discovery/WireStream.h"

namespace discovery {

/// All that was heard at an adapter for a while.
struct Findings {
    struct Frames {
        std::uint64_t avtp = 0;         ///< all but those that are not read
        std::uint64_t control = 0;      ///< of these, discovery, control, connections, allocation of addresses
        std::uint64_t reservations = 0; ///< all but those that are not read
        // Not read:
        std::uint64_t severalTags = 0;
        std::uint64_t incomplete = 0; ///< or not in order
        std::uint64_t otherVersion = 0;
    };

    double seconds = 0; ///< that were listened
    Frames frames;
    /// By ID, then those without. Some thousand are kept.
    std::vector<WireStream> streams;
    std::uint64_t streamsBeyond = 0; ///< that were heard, but not kept: at least so many
    /// By ID. Some thousand are kept.
    std::vector<Offer> offers;
    std::uint64_t announcementsBeyond = 0; ///< of streams that are not kept
    /// Frames that this machine had no time for: a gap may be its own.
    std::uint64_t kernelDrops = 0;
};

} // namespace discovery
