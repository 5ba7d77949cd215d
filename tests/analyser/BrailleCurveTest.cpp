#include "analyser/terminal/BrailleCurve.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

TEST(BrailleCurve, hasTheShapeOfItsValues) {
    struct DrawnCurve {
        std::vector<double> values;
        std::size_t columns;
        std::vector<std::string> expected;
    };
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const auto &[values, columns, expected] : {DrawnCurve{{}, 2, {"⠀⠀", "⠀⠀"}},
                                                    {{1.0}, 2, {"⠉⠉", "⠀⠀"}},
                                                    {{-1.0, -1.0}, 2, {"⠀⠀", "⣀⣀"}},
                                                    {{7.0, -7.0}, 1, {"⢱", "⢸"}}, // a jump is one line
                                                    {{1.0, 1.0 / 3, -1.0 / 3, -1.0}, 2, {"⠑⢄"}},
                                                    {{-1.0, -1.0 / 3, 1.0 / 3, 1.0}, 2, {"⡠⠊"}},
                                                    {{1.0, -1.0, 1.0, -1.0}, 1, {"⣿"}},
                                                    {{noNumber, infinite}, 1, {"⠤"}},
                                                    {{1.0}, 0, {""}}}) {
        EXPECT_EQ(analyser::brailleCurve(values, 1.0, columns, expected.size()), expected);
    }
}

TEST(BrailleCurve, fillTheScaleThatTheyGet) {
    EXPECT_EQ(analyser::brailleCurve({0.25}, 0.25, 1, 2), analyser::brailleCurve({1.0}, 1.0, 1, 2));
    EXPECT_TRUE(analyser::brailleCurve({1.0}, 1.0, 1, 0).empty());
}

} // namespace
