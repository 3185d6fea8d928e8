#include "Profiles/Zoom.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarn {

namespace {

constexpr double infinity { std::numeric_limits<double>::infinity() };
constexpr double notANumber { std::numeric_limits<double>::quiet_NaN() };

TEST(ZoomTest, LevelOfAFactor)
{
    struct Case {
        double factor;
        double level;
    };
    for (auto const& [factor, level] : {
             Case { 1.0, 0 },
             Case { 1.2, 1 },
             Case { 1.1, 0.5 },
             Case { 1.04, 0 },
             Case { 1.05, 0.5 },
             Case { 0.95, -0.5 },
             Case { 1 / 1.44, -2 },
             Case { 10, 5 },
             Case { 0.1, -3 },
             Case { std::numeric_limits<double>::max(), 5 },
             Case { std::numeric_limits<double>::denorm_min(), -3 },
             Case { 0, 0 },
             Case { -1.2, 0 },
             Case { infinity, 0 },
             Case { -infinity, 0 },
             Case { notANumber, 0 },
         })
        EXPECT_DOUBLE_EQ(Zoom::level(factor), level) << factor;
}

TEST(ZoomTest, EveryLevelOfTheScaleComesBack)
{
    int levels = 0;
    for (auto level = Zoom::minimumLevel; level <= Zoom::maximumLevel; level += Zoom::step, ++levels)
        EXPECT_DOUBLE_EQ(Zoom::level(Zoom::factor(level)), level);
    EXPECT_EQ(levels, 17);
    EXPECT_EQ(Zoom::factor(0), 1.0);
    EXPECT_NEAR(Zoom::factor(-3), 0.579, 0.001);
    EXPECT_NEAR(Zoom::factor(5), 2.488, 0.001);
    EXPECT_EQ(Zoom::factor(5.5), Zoom::factor(5));
    EXPECT_EQ(Zoom::factor(-9), Zoom::factor(-3));
    EXPECT_EQ(Zoom::factor(notANumber), 1.0);
}

TEST(ZoomTest, StoredFactorsSnapToTheScale)
{
    EXPECT_DOUBLE_EQ(Zoom::snapped(1.21), 1.2);
    EXPECT_DOUBLE_EQ(Zoom::snapped(100), Zoom::factor(5));
    EXPECT_DOUBLE_EQ(Zoom::snapped(0.01), Zoom::factor(-3));
    for (auto const senseless : { 0.0, -1.0, infinity, notANumber })
        EXPECT_EQ(Zoom::snapped(senseless), 1.0) << senseless;
    EXPECT_EQ(Zoom::snapped(std::nullopt), 1.0);
}

}

}
