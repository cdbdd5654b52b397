#include <gtest/gtest.h>

#include "model/ThresholdRanges.h"

using namespace ostrel;

TEST(ThresholdRanges, theElevatedStepperStopsOneBelowTheHighThreshold)
{
    EXPECT_EQ(ThresholdRanges::elevated(85.0), (ThresholdRange {40.0, 84.0}));
    EXPECT_EQ(ThresholdRanges::elevated(95.0), (ThresholdRange {40.0, 94.0}));
}

TEST(ThresholdRanges, theHighStepperStartsOneAboveTheElevatedThresholdAndGoesTo140)
{
    EXPECT_EQ(ThresholdRanges::high(100.0), (ThresholdRange {101.0, 140.0}));
    EXPECT_EQ(ThresholdRanges::high(85.0), (ThresholdRange {86.0, 140.0}));
}

TEST(ThresholdRanges, thresholdsAtTheEdgesStillFormARangeOfOneValue)
{
    EXPECT_EQ(ThresholdRanges::elevated(41.0), (ThresholdRange {40.0, 40.0}));
    EXPECT_EQ(ThresholdRanges::high(139.0), (ThresholdRange {140.0, 140.0}));
}

TEST(ThresholdRangesDeathTest, aHighThresholdBelow41StopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ThresholdRanges::elevated(40.0), "elevated threshold's range");
    EXPECT_DEATH(ThresholdRanges::elevated(12.0), "can't be formed");
}

TEST(ThresholdRangesDeathTest, anElevatedThresholdAbove139StopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ThresholdRanges::high(139.5), "high threshold's range");
    EXPECT_DEATH(ThresholdRanges::high(200.0), "can't be formed");
}
