#pragma once

#include <cstddef>
#include <vector>

namespace analyser {

/// A tone in a spectrum.
struct SpectrumTone {
    /// In Hz, of the bin with the highest power.
    double frequency = 0.0;
    /// Its mean square: the power of the window's whole main lobe.
    double power = 0.0;
};

/// @param powers by bin; empty for none @param binWidth in Hz
SpectrumTone strongestTone(const std::vector<double> &powers, double binWidth);

/**
 * Puts the bins of a spectrum on a logarithmic frequency axis: the highest power of the bins in each column, or that of
 * the nearest bin where a column is narrower than a bin.
 */
class FrequencyAxis {
public:
    /// @param bins of the spectrum, from 0 Hz @param binWidth in Hz
    FrequencyAxis(std::size_t bins, double binWidth, std::size_t columns);

    std::vector<double> columnsOf(const std::vector<double> &powers) const;
    /// The column of a frequency; may be beyond the axis.
    double column(double frequency) const;
    double lowest() const { return low; }
    double highest() const { return high; }

private:
    std::size_t bins;
    double binWidth;
    std::size_t columns;
    double low;
    double high;
};

} // namespace analyser
