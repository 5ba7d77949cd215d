#pragma once

#include <algorithm>
#include <random>
#include <vector>

namespace support {

/// Values from -1 to 1, the same for the same length and seed.
template <class Element>
std::vector<Element> noise(std::size_t length, unsigned seed = 0) {
    std::mt19937 random(static_cast<unsigned>(length) + seed);
    std::uniform_real_distribution<Element> range(-1, 1);
    std::vector<Element> values(length);
    std::generate(values.begin(), values.end(), [&] { return range(random); });
    return values;
}

} // namespace support
