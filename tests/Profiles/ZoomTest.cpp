#include "Profiles/Zoom.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarn {

namespace {

constexpr double infinity { std::numeric_limits<double>::infinity() };
constexpr double notANumber { std::numeric_limits<double>::quiet_NaN() };

TEST(ZoomTest, LevelOfAFactor)
{
    std::pair<double, double> const rows[] { { 1.0, 0 }, { 1.2, 1 }, { 1.04, 0 }, { 1.05, 0.5 }, { 0.95, -0.5 },
        { 1 / 1.44, -2 }, { std::numeric_limits<double>::max(), 5 }, { std::numeric_limits<double>::denorm_min(), -3 },
        { 0, 0 }, { -1.2, 0 }, { infinity, 0 }, { notANumber, 0 } };
    for (auto const& [factor, level] : rows) {
        EXPECT_DOUBLE_EQ(Zoom::level(factor), level) << factor;
        EXPECT_DOUBLE_EQ(Zoom::snapped(factor), Zoom::factor(level)) << factor;
    }
    EXPECT_EQ(Zoom::snapped(std::nullopt), 1.0);
}

TEST(ZoomTest, EveryLevelOfTheScaleComesBack)
{
    int levels = 0;
    for (auto level = Zoom::minimumLevel; level <= Zoom::maximumLevel; level += Zoom::step, ++levels)
        EXPECT_DOUBLE_EQ(Zoom::level(Zoom::factor(level)), level);
    EXPECT_EQ(levels, 17);
    EXPECT_EQ(Zoom::factor(0), 1.0);
    EXPECT_NEAR(Zoom::factor(-9), 0.579, 0.001);
    EXPECT_NEAR(Zoom::factor(5.5), 2.488, 0.001);
    EXPECT_EQ(Zoom::factor(notANumber), 1.0);
}

}

}
