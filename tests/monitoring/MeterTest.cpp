#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "monitoring/meters/SoundLevelMeter.h"
#include "monitoring/meters/SpectrumMeter.h"
#include "monitoring/meters/WaveformMeter.h"

namespace {

constexpr double silence = -std::numeric_limits<double>::infinity();

TEST(SoundLevelMeter, keepsTheHighestLevelAndTheMeanOfEnergiesOfItsWindow) {
    for (const std::size_t window : {0U, 2U}) {
        monitoring::SoundLevelMeter meter(window);
        EXPECT_EQ(meter.readings()[0].equivalent, silence);
        meter.take(std::vector<double>(7, 0.0));
        meter.take({silence, -10, -10, -10, -10, -10, -10});
        meter.take({-20, -10, -10, -10, -10, -10, -10});
        meter.take({}); // of a buffer that is too short
        const auto &reading = meter.readings()[0];
        EXPECT_EQ(reading.level, -20);
        EXPECT_EQ(reading.maximum, window == 0 ? 0 : -20);
        EXPECT_NEAR(reading.equivalent, 10 * std::log10((window == 0 ? 1.01 : 0.01) / (window == 0 ? 3 : 2)), 1e-12);
        EXPECT_NEAR(meter.readings()[6].equivalent, window == 0 ? 10 * std::log10(0.4) : -10, 1e-12);
    }
}

TEST(SpectrumMeter, holdsPeaksAndMeasuresTheStrongestToneWithAllItsBins) {
    monitoring::SpectrumMeter meter(3000.0);
    EXPECT_EQ(meter.strongestTone().power, 0.0);
    meter.take({0, 0, 1.0 / 12, 1.0 / 3, 1.0 / 12, 0, 0, 0.25});
    EXPECT_EQ(meter.strongestTone().frequency, 9000.0);
    EXPECT_NEAR(meter.strongestTone().power, 0.5, 1e-15);
    meter.take({0, 0, 0, 0.5, 0, 0, 0, 0});
    EXPECT_EQ(meter.powers()[7], 0.0);
    EXPECT_EQ(meter.peakHold(), (std::vector<double>{0, 0, 1.0 / 12, 0.5, 1.0 / 12, 0, 0, 0.25}));
}

TEST(WaveformMeter, keepsThePeakUntilItIsTaken) {
    monitoring::WaveformMeter meter;
    meter.take({0.1, -0.8});
    meter.take({0.2});
    EXPECT_EQ(meter.peak(), 0.2);
    EXPECT_EQ(meter.takePeak(), 0.8);
    EXPECT_EQ(meter.takePeak(), 0.8) << "nothing came since";
    meter.take({-0.3});
    EXPECT_EQ(meter.takePeak(), 0.3);
}

} // namespace
