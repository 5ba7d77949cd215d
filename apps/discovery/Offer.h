#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/MacAddress.h"
#include "common/StreamId.h"

namespace discovery {

/// A stream that its talker announces to the network, as the reservation protocol says it.
struct Offer {
    common::StreamId id{};
    common::MacAddress destination{};
    unsigned vlan = 0;
    unsigned priority = 0;
    unsigned maxFrameSize = 0;      ///< bytes of a frame's data
    unsigned maxIntervalFrames = 0; ///< in each interval of the class: 125 us in class A, 250 us in class B
    /// Why the network can't bring the stream here; none if it could.
    std::optional<unsigned> failureCode;
    bool isDelivered = false; ///< frames of it were heard
};

/// A failure code in words.
std::string describeFailure(unsigned code);

} // namespace discovery
