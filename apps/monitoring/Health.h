#pragma once

#include <optional>
#include <vector>

#include "monitoring/Status.h"

namespace monitoring {

/// Finds out why there is silence. Counts matter by their growth from one examination to the next.
class Health {
public:
    /// An analysis that gives no result for so long is silent.
    static constexpr double patience = 2.0; // s

    /// @param status without its conditions
    std::vector<Condition> examine(const Status &status);

private:
    std::vector<Condition> streamConditions(const StreamStatus &stream, const Status &status) const;
    std::optional<Condition> refusalOf(const StreamStatus &stream) const;
    Condition silenceOf(const StreamStatus &stream, unsigned channel) const;
    StreamStatus before(const StreamStatus &stream) const;

    std::vector<StreamStatus> latest;
};

} // namespace monitoring
