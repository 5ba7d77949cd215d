#include "ReferenceTransform.h"

#include <cmath>
#include <map>

namespace support {

namespace {

constexpr long double pi = 3.14159265358979323846264338327950288L;

/// All N bins of the N samples at first, first + stride, ...
Bins halve(const std::vector<float> &samples, std::size_t first, std::size_t stride) {
    const std::size_t length = samples.size() / stride;
    if (length == 1) {
        return {{samples[first], 0}};
    }
    const Bins even = halve(samples, first, 2 * stride);
    const Bins odd = halve(samples, first + stride, 2 * stride);
    Bins bins(length);
    for (std::size_t k = 0; k < length / 2; ++k) {
        const std::complex<double> turned = rootOfUnity(k, length) * odd[k];
        bins[k] = even[k] + turned;
        bins[k + length / 2] = even[k] - turned;
    }
    return bins;
}

} // namespace

std::complex<double> rootOfUnity(std::size_t turns, std::size_t whole) {
    static std::map<std::size_t, Bins> tables;
    Bins &table = tables[whole];
    if (table.empty()) {
        for (std::size_t turn = 0; turn < whole; ++turn) {
            const long double angle = -2 * pi * static_cast<long double>(turn) / static_cast<long double>(whole);
            table.emplace_back(static_cast<double>(std::cos(angle)), static_cast<double>(std::sin(angle)));
        }
    }
    return table[turns % whole];
}

Bins transformByHalving(const std::vector<float> &samples) {
    Bins bins = halve(samples, 0, 1);
    bins.resize(samples.size() / 2 + 1, bins[0]);
    return bins;
}

} // namespace support
