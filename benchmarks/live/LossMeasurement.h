#pragma once

#include <cstdint>
#include <vector>

#include "live/Machine.h"
#include "live/Measurement.h"

namespace live {

/// Frames that get lost while every core is busy.
class LossMeasurement : public Measurement {
public:
    int expectedSeconds() const override;
    void measure(const Link &link) override;
    void print() const override;

private:
    struct Row {
        unsigned wanted;    ///< frames a second
        double reached = 0; ///< frames a second
        std::uint64_t sent = 0;
        std::uint64_t taken = 0;
        std::uint64_t lost = 0;
        std::uint64_t kernelDrops = 0;
        std::uint64_t refused = 0;
        DropsOnTheWay onTheWay{};
        double waited = 0; ///< ms
    };

    std::vector<Row> rows = {{8000}, {64000}, {256000}};
    bool senderFirst = false;
};

} // namespace live
