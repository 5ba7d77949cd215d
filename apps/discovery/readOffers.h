#pragma once

#include <functional>

#include "discovery/Bytes.h"
#include "discovery/Offer.h"

namespace discovery {

/// What a talker's attribute in a reservation frame says of a stream.
struct Announcement {
    Offer offer;
    bool withdrawn = false; ///< rather than offered
};

/// Reads the talkers' attributes of a stream reservation frame (MSRP), each value of a vector for itself; those of
/// listeners and domains are passed over.
/// @return whether the frame is in order to its end; what stands before a flaw has been announced
bool readOffers(Bytes payload, const std::function<void(const Announcement &)> &announce);

} // namespace discovery
