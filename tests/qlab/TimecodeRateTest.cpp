#include <gtest/gtest.h>

#include <set>

#include "qlab/TimecodeRate.h"

using namespace ostrel;

TEST(TimecodeRate, RawValuesAreQLabsIndicesAndRoundTrip)
{
    std::set<int> seen;
    for (const auto rate : TimecodeRates::all) {
        const int raw = TimecodeRates::rawValue(rate);
        seen.insert(raw);
        EXPECT_EQ(TimecodeRates::fromRawValue(raw), rate);
    }
    EXPECT_EQ(seen, (std::set<int> {0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(TimecodeRates::fromRawValue(3), TimecodeRate::fps30Drop);
    EXPECT_EQ(TimecodeRates::fromRawValue(7), TimecodeRate::fps2997Drop);
}

TEST(TimecodeRate, IndicesOutsideZeroToSevenAreNothing)
{
    EXPECT_FALSE(TimecodeRates::fromRawValue(-1));
    EXPECT_FALSE(TimecodeRates::fromRawValue(8));
    EXPECT_FALSE(TimecodeRates::fromRawValue(99));
}

TEST(TimecodeRate, FractionalRatesAreExactRatiosExceptTwentyFourPointNineSevenFive)
{
    EXPECT_EQ(TimecodeRates::actualFPS(TimecodeRate::fps23976), 24000.0 / 1001.0);
    EXPECT_EQ(TimecodeRates::actualFPS(TimecodeRate::fps2997), 30000.0 / 1001.0);
    EXPECT_EQ(TimecodeRates::actualFPS(TimecodeRate::fps2997Drop), 30000.0 / 1001.0);
    EXPECT_EQ(TimecodeRates::actualFPS(TimecodeRate::fps24975), 24.975);
    EXPECT_EQ(TimecodeRates::actualFPS(TimecodeRate::fps30Drop), 30.0);
}

TEST(TimecodeRate, OnlyTheTwoDropRatesDropFrames)
{
    for (const auto rate : TimecodeRates::all) {
        const bool drop = rate == TimecodeRate::fps30Drop || rate == TimecodeRate::fps2997Drop;
        EXPECT_EQ(TimecodeRates::isDropFrame(rate), drop) << TimecodeRates::title(rate);
    }
}

TEST(TimecodeRate, NominalRatesAndTitles)
{
    EXPECT_EQ(TimecodeRates::nominalFPS(TimecodeRate::fps23976), 24);
    EXPECT_EQ(TimecodeRates::nominalFPS(TimecodeRate::fps24975), 25);
    EXPECT_EQ(TimecodeRates::nominalFPS(TimecodeRate::fps2997Drop), 30);
    EXPECT_EQ(TimecodeRates::title(TimecodeRate::fps24975), "24.975 fps");
    EXPECT_EQ(TimecodeRates::title(TimecodeRate::fps2997Drop), "29.97 fps drop");
}
