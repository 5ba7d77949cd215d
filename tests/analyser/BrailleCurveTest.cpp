#include "analyser/BrailleCurve.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace {

struct DrawnCurve {
    const char *name;
    std::vector<double> values;
    std::size_t columns;
    std::vector<std::string> expected;
};

class BrailleCurve : public testing::TestWithParam<DrawnCurve> {};

TEST_P(BrailleCurve, hasTheShapeOfItsValues) {
    const auto &[name, values, columns, expected] = GetParam();
    EXPECT_EQ(analyser::brailleCurve(values, 1.0, columns, expected.size()), expected);
}

const double noNumber = std::numeric_limits<double>::quiet_NaN();
const double infinite = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(Shapes, BrailleCurve,
                         testing::Values(DrawnCurve{"nothing", {}, 2, {"⠀⠀", "⠀⠀"}},
                                         DrawnCurve{"fullScale", {1.0}, 2, {"⠉⠉", "⠀⠀"}},
                                         DrawnCurve{"negativeFullScale", {-1.0, -1.0}, 2, {"⠀⠀", "⣀⣀"}},
                                         DrawnCurve{"clipped", {7.0, -7.0}, 1, {"⢱", "⢸"}}, // a jump is one line
                                         DrawnCurve{"fallingSlope", {1.0, 1.0 / 3, -1.0 / 3, -1.0}, 2, {"⠑⢄"}},
                                         DrawnCurve{"risingSlope", {-1.0, -1.0 / 3, 1.0 / 3, 1.0}, 2, {"⡠⠊"}},
                                         DrawnCurve{"moreValuesThanDots", {1.0, -1.0, 1.0, -1.0}, 1, {"⣿"}},
                                         DrawnCurve{"noNumbers", {noNumber, infinite}, 1, {"⠤"}},
                                         DrawnCurve{"noRoom", {1.0}, 0, {""}}),
                         [](const auto &curve) { return curve.param.name; });

TEST(BrailleCurves, fillTheScaleThatTheyGet) {
    EXPECT_EQ(analyser::brailleCurve({0.25}, 0.25, 1, 2), analyser::brailleCurve({1.0}, 1.0, 1, 2));
    EXPECT_TRUE(analyser::brailleCurve({1.0}, 1.0, 1, 0).empty());
}

} // namespace
