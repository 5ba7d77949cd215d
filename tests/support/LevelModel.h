#pragma once

#include <array>
#include <vector>

namespace support {

/// Sound levels at 48 kHz computed value by value from the difference equations, in the order of a result's values.
class LevelModel {
public:
    /// The highest levels behind any of the samples, in dB. Runs on from call to call.
    std::vector<double> measure(const std::vector<float> &samples);

private:
    struct Section {
        std::array<double, 3> b;
        std::array<double, 3> a;
        std::array<double, 2> x{};
        std::array<double, 2> y{};

        double filter(double value);
    };

    static const std::vector<Section> aWeighting;
    static const std::vector<Section> cWeighting;

    std::vector<std::vector<Section>> filters{aWeighting, cWeighting, {}};
    std::array<double, 6> averages{};
};

} // namespace support
