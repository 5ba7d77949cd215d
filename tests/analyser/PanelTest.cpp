#include "analyser/terminal/Panel.h"

#include <limits>

#include <gtest/gtest.h>

#include "analyser/terminal/SpectrumAxes.h"
#include "monitoring/results.h"

namespace {

monitoring::SessionSettings settings(std::optional<double> reference) {
    monitoring::SessionSettings settings;
    settings.reference = reference;
    return settings;
}

/// A panel with what its analysis has given.
class Shown {
public:
    explicit Shown(const std::string &kind, const std::string &value, std::optional<double> reference = {})
        : analysis(support::makeAnalysis(kind, value)), meterPanel(*analysis, settings(reference)) {}

    void take(std::vector<double> y) { meterPanel.take(support::makeResult(analysis, std::move(y))); }
    analyser::Panel *operator->() { return &meterPanel.panel(); }

private:
    std::shared_ptr<const monitoring::Analysis> analysis;
    analyser::MeterPanel meterPanel;
};

TEST(FrequencyAxis, givesEachColumnItsOctaves) {
    const analyser::FrequencyAxis axis(1024, 23.4375, 100);
    EXPECT_NEAR(axis.column(23.4375), 0, 1e-9);
    EXPECT_NEAR(axis.column(23.4375 * 2), 10, 1e-9);
    EXPECT_NEAR(axis.column(24000), 100, 1e-9);
    std::vector<double> powers(1024, 0.0);
    powers[1000] = 1; // shares its column with others
    powers[2] = 0.5;  // fills several columns
    const auto columns = axis.columnsOf(powers);
    ASSERT_EQ(columns.size(), 100U);
    EXPECT_EQ(columns[99], 1.0);
    EXPECT_EQ(columns[98], 0.0);
    EXPECT_EQ(columns[10], 0.5);
    EXPECT_EQ(columns[3], 0.0);
    EXPECT_TRUE(axis.columnsOf({}).empty());
    EXPECT_EQ(analyser::FrequencyAxis(1, 24000, 3).columnsOf({0.5}), (std::vector<double>{0.5, 0.5, 0.5}));
}

TEST(Panels, tellATonesFrequencyAndTheLevelOfAllItsBins) {
    Shown spectrum("spectrum", "0:4");
    EXPECT_EQ(spectrum->takeHeadline(), "peak at 0.0 Hz, -inf dBFS");
    spectrum.take({0, 0, 1.0 / 12, 1.0 / 3, 1.0 / 12, 0, 0, 0});
    EXPECT_EQ(spectrum->takeHeadline(), "peak at 9000.0 Hz, -3.0 dBFS");
    const auto held = spectrum->draw(40, 6);
    ASSERT_EQ(held.size(), 6U);
    EXPECT_EQ(held[0].substr(0, 7), "   0.0 ");
    spectrum.take(std::vector<double>(8, 0.0));
    EXPECT_NE(spectrum->draw(40, 6), Shown("spectrum", "0:4")->draw(40, 6)) << "the peaks stay";
    EXPECT_TRUE(spectrum->draw(6, 6).empty());
    Shown calibrated("spectrum", "0:4", 120.0);
    calibrated.take({0, 0.5});
    EXPECT_EQ(calibrated->takeHeadline(), "peak at 3000.0 Hz, 117.0 dB SPL");
}

TEST(Panels, showTheHighestLevelAndTheMeanOfEnergies) {
    const double silence = -std::numeric_limits<double>::infinity();
    for (const bool calibrated : {false, true}) {
        Shown levels("levels", "0", calibrated ? std::optional<double>(100.0) : std::nullopt);
        EXPECT_EQ(levels->draw(60, 1)[0].substr(0, 40), "A fast       -inf  max   -inf  eq   -inf");
        levels.take(std::vector<double>(7, -10.0));
        levels.take({silence, -10, -10, -10, -10, -10, -10});
        const auto lines = levels->draw(60, 9);
        ASSERT_EQ(lines.size(), 7U);
        EXPECT_EQ(lines[0].substr(0, 41), calibrated ? "A fast       -inf  max   90.0  eq   87.0 "
                                                     : "A fast       -inf  max  -10.0  eq  -13.0 ");
        EXPECT_EQ(lines[0].find("SPL"), std::string::npos);
        EXPECT_NE(levels->takeHeadline().find(calibrated ? "dB SPL" : "dBFS"), std::string::npos);
    }
}

} // namespace
