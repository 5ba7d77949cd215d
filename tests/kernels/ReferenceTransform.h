#pragma once

#include <complex>
#include <vector>

namespace support {

using Bins = std::vector<std::complex<double>>;

/// Bins 0 to N / 2 of N samples, a power of two, in double precision.
Bins transformByHalving(const std::vector<float> &samples);

/// e^(-2 pi i turns / whole)
std::complex<double> rootOfUnity(std::size_t turns, std::size_t whole);

} // namespace support
