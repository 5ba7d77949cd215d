#pragma once

#include <cstddef>
#include <vector>

namespace analyser {

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
