#pragma once

#include <optional>
#include <vector>

#include "monitoring/Status.h"

namespace monitoring {

/// Finds out why there is silence, or why samples are missing. Counts matter by their growth from one examination to
/// the next.
class Health {
public:
    /// An analysis that gives no result for so long is silent.
    static constexpr double patience = 2.0; // s

    /// That samples are missing stays a condition for so long, as it comes again and again.
    static constexpr double remembrance = 5.0; // s

    /// @param status without its conditions
    std::vector<Condition> examine(const Status &status);

private:
    /// A loss of samples while results come, and when it was seen last.
    struct Loss {
        Condition condition;
        double seconds;
    };

    std::vector<Condition> streamConditions(const StreamStatus &stream, const Status &status);
    void remember(const Condition &condition, double seconds);
    std::optional<Condition> refusalOf(const StreamStatus &stream) const;
    Condition silenceOf(const StreamStatus &stream, unsigned channel) const;
    StreamStatus before(const StreamStatus &stream) const;

    std::vector<StreamStatus> latest;
    std::vector<Loss> losses;
};

} // namespace monitoring
