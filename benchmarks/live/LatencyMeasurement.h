#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "live/Measurement.h"

namespace live {

/// The time from the sending of a frame to the function that gets it, or what it led to.
class LatencyMeasurement : public Measurement {
public:
    int expectedSeconds() const override;
    void measure(const Link &link) override;
    void print() const override;

private:
    struct Row {
        std::string name;
        unsigned clock;                        ///< samples of a waveform; 0 for libpcap's callback
        std::uint64_t sent = 0;                ///< frames that get there, or complete a waveform
        std::vector<std::int64_t> latencies{}; ///< ns
    };

    std::vector<Row> rows = {{"libpcap's callback", 0}, {"waveform of 48", 48}};
};

} // namespace live
