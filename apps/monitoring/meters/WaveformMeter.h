#pragma once

#include <vector>

#include "monitoring/meters/Meter.h"

namespace monitoring {

/// The newest curve and its peak.
class WaveformMeter : public Meter {
public:
    void take(const std::vector<double> &values) override;
    void accept(MeterVisitor &visitor) override { visitor.visit(*this); }

    const std::vector<double> &values() const { return newest; }
    /// Of the newest curve.
    double peak() const { return newestPeak; }
    /// Of the curves since the last call, or of the newest one before it.
    double takePeak();

private:
    std::vector<double> newest;
    double newestPeak = 0.0;
    double highest = 0.0;
    bool peakTaken = false;
};

} // namespace monitoring
