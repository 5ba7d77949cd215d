#pragma once

#include <complex>
#include <vector>

namespace support {

using Bins = std::vector<std::complex<double>>;

/// The sum that defines the transform, bin by bin: bins 0 to N / 2 of N samples.
Bins transformByDefinition(const std::vector<float> &samples);

/// The same in double precision by halving, for lengths that are powers of two.
Bins transformByHalving(const std::vector<float> &samples);

/// e^(-2 pi i turns / whole)
std::complex<double> rootOfUnity(std::size_t turns, std::size_t whole);

} // namespace support
