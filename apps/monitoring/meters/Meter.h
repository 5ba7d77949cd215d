#pragma once

#include <vector>

namespace monitoring {

class SoundLevelMeter;
class SpectrumMeter;
class WaveformMeter;

/// For those who make something of each kind of meter, as a picture.
class MeterVisitor {
public:
    virtual ~MeterVisitor() = default;
    virtual void visit(SoundLevelMeter &meter) = 0;
    virtual void visit(SpectrumMeter &meter) = 0;
    virtual void visit(WaveformMeter &meter) = 0;
};

/// What is measured over the results of one analysis. Not for several threads: each listener has its own.
class Meter {
public:
    Meter() = default;
    virtual ~Meter() = default;
    Meter(const Meter &) = delete;
    Meter &operator=(const Meter &) = delete;

    /// @param values y of a result
    virtual void take(const std::vector<double> &values) = 0;
    virtual void accept(MeterVisitor &visitor) = 0;
};

} // namespace monitoring
