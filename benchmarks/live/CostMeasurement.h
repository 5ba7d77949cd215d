#pragma once

#include <string>
#include <vector>

#include "live/Measurement.h"
#include "live/Traffic.h"

namespace live {

/// CPU time of the capture's thread a frame, beside that of libpcap's loop with an empty callback.
class CostMeasurement : public Measurement {
public:
    /// @param only the one case that is measured, as for a profile; all if empty
    explicit CostMeasurement(const std::string &only = "");

    int expectedSeconds() const override;
    void measure(const Link &link) override;
    void print() const override;

private:
    struct Row {
        std::string name;
        Traffic traffic;
        std::vector<double> bare{};    ///< ns a frame, by round
        std::vector<double> library{}; ///< the same
        double rate = 0;               ///< the least that was reached
    };

    std::vector<Row> rows;
};

} // namespace live
