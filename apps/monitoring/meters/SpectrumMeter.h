#pragma once

#include <vector>

#include "monitoring/meters/Meter.h"

namespace monitoring {

/// The newest powers and the highest of each bin since the start.
class SpectrumMeter : public Meter {
public:
    /// The strongest tone of a spectrum.
    struct Tone {
        double frequency = 0.0; ///< in Hz, of the bin with the highest power
        double power = 0.0;     ///< its mean square: that of the window's whole main lobe
    };

    /// @param binWidth in Hz
    explicit SpectrumMeter(double binWidth) : width(binWidth) {}

    void take(const std::vector<double> &values) override;
    void accept(MeterVisitor &visitor) override { visitor.visit(*this); }

    double binWidth() const { return width; }
    const std::vector<double> &powers() const { return newest; }
    const std::vector<double> &peakHold() const { return held; }
    Tone strongestTone() const;

private:
    double width;
    std::vector<double> newest;
    std::vector<double> held;
};

} // namespace monitoring
