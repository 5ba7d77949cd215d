#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "monitoring/meters/Meter.h"

namespace monitoring {

/// The newest powers and the highest of each bin: over the run, or over the newest results.
class SpectrumMeter : public Meter {
public:
    /// The strongest tone of a spectrum.
    struct Tone {
        double frequency = 0.0; ///< in Hz, of the bin with the highest power
        double power = 0.0;     ///< its mean square: that of the window's whole main lobe
    };

    /// @param binWidth in Hz @param window in results, or up to an eighth more; 0 for the whole run
    explicit SpectrumMeter(double binWidth, std::size_t window = 0);

    void take(const std::vector<double> &values) override;
    void accept(MeterVisitor &visitor) override { visitor.visit(*this); }

    double binWidth() const { return width; }
    const std::vector<double> &powers() const { return newest; }
    const std::vector<double> &peakHold() const { return held; }
    Tone strongestTone() const;

private:
    double width;
    std::size_t partLength; ///< in results; 0 for the whole run
    std::size_t partsKept;
    std::deque<std::vector<double>> parts; ///< what each part of the window holds
    std::size_t inNewestPart = 0;          ///< results
    std::vector<double> newest;
    std::vector<double> held;
};

} // namespace monitoring
