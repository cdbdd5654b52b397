#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "qlab/Timecode.h"

using namespace ostrel;

namespace {

Timecode::Components hmsf(int hours, int minutes, int seconds, int frames)
{
    return {hours, minutes, seconds, frames};
}

} // namespace

TEST(Timecode, DropFrameSkipsTwoLabelsAtTheMinuteButNotAtTheTenth)
{
    EXPECT_EQ(Timecode(1'799, TimecodeRate::fps2997Drop).formatted(), "00:00:59;29");
    EXPECT_EQ(Timecode(1'800, TimecodeRate::fps2997Drop).formatted(), "00:01:00;02");
    EXPECT_EQ(Timecode(17'982, TimecodeRate::fps2997Drop).formatted(), "00:10:00;00");
    EXPECT_EQ(Timecode(17'981, TimecodeRate::fps2997Drop).formatted(), "00:09:59;29");
}

TEST(Timecode, OneHourAtThirtyDropIsHundredSevenThousandEightHundredNinetyTwoFrames)
{
    const auto timecode = Timecode::fromQLabString("01:00:00:00", TimecodeRate::fps30Drop);
    ASSERT_TRUE(timecode);
    EXPECT_EQ(timecode->frame(), 107'892);
    EXPECT_EQ(timecode->rate(), TimecodeRate::fps30Drop);
}

TEST(Timecode, FramesAtOrAboveNominalRateDoNotParse)
{
    EXPECT_FALSE(Timecode::fromQLabString("00:00:10:25", TimecodeRate::fps25));
    EXPECT_TRUE(Timecode::fromQLabString("00:00:10:24", TimecodeRate::fps25));
    // 24.975 still counts 25 labels a second.
    EXPECT_TRUE(Timecode::fromQLabString("00:00:10:24", TimecodeRate::fps24975));
    EXPECT_FALSE(Timecode::fromQLabString("00:00:10:24", TimecodeRate::fps23976));
}

TEST(Timecode, ThreePiecesMeanNoFrames)
{
    const auto timecode = Timecode::fromQLabString("00:00:10", TimecodeRate::fps25);
    ASSERT_TRUE(timecode);
    EXPECT_EQ(timecode->frame(), 250);
}

TEST(Timecode, PlainSecondsRoundToTheNearestNominalFrame)
{
    const auto half = Timecode::fromQLabString("10.5", TimecodeRate::fps25);
    ASSERT_TRUE(half);
    EXPECT_EQ(half->frame(), 263);

    const auto whole = Timecode::fromQLabString("10", TimecodeRate::fps25);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->frame(), 250);

    // Nominal, not actual: 29.97 parses in thirtieths.
    const auto drop = Timecode::fromQLabString("2", TimecodeRate::fps2997);
    ASSERT_TRUE(drop);
    EXPECT_EQ(drop->frame(), 60);
}

TEST(Timecode, ColonsAndSemicolonsParseAlike)
{
    for (const auto rate : TimecodeRates::all) {
        const auto mixed = Timecode::fromQLabString("01:00:00;00", rate);
        const auto semicolons = Timecode::fromQLabString("01;00;00;00", rate);
        const auto colons = Timecode::fromQLabString("01:00:00:00", rate);
        ASSERT_TRUE(mixed);
        ASSERT_TRUE(semicolons);
        EXPECT_EQ(*mixed, *semicolons);
        EXPECT_EQ(*mixed, *colons);
    }
}

TEST(Timecode, RateAloneDecidesTheSeparator)
{
    const auto drop = Timecode::fromQLabString("01:00:00:00", TimecodeRate::fps2997Drop);
    const auto plain = Timecode::fromQLabString("01;00;00;00", TimecodeRate::fps2997);
    ASSERT_TRUE(drop);
    ASSERT_TRUE(plain);
    EXPECT_EQ(drop->formatted(), "01:00:00;00");
    EXPECT_EQ(plain->formatted(), "01:00:00:00");
    EXPECT_EQ(Timecode(107'892, TimecodeRate::fps30Drop).formatted(), "01:00:00;00");
}

TEST(Timecode, EmptyNegativeAndLetteredTextDoNotParse)
{
    EXPECT_FALSE(Timecode::fromQLabString("", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("   ", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("-3", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("a:b:c", TimecodeRate::fps25));
}

TEST(Timecode, OnePieceThatDoesNotParseSpoilsTheWholeTime)
{
    EXPECT_FALSE(Timecode::fromQLabString("01:00:xx:00", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("01:00:00:0x", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("01: 00:00:00", TimecodeRate::fps25));
}

TEST(Timecode, OtherPieceCountsAreReadAsSecondsOrNothing)
{
    EXPECT_FALSE(Timecode::fromQLabString("01:00", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("01:00:00:00:00", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("::", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("ten", TimecodeRate::fps25));
}

TEST(Timecode, MinutesAndSecondsMustBeUnderSixty)
{
    EXPECT_FALSE(Timecode::fromQLabString("00:60:00:00", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("00:00:60:00", TimecodeRate::fps25));
    EXPECT_TRUE(Timecode::fromQLabString("00:59:59:00", TimecodeRate::fps25));
}

TEST(Timecode, HoursPastADayWrap)
{
    const auto late = Timecode::fromQLabString("25:00:00:00", TimecodeRate::fps25);
    ASSERT_TRUE(late);
    EXPECT_EQ(*late, Timecode(1, 0, 0, 0, TimecodeRate::fps25));

    const auto lateDrop = Timecode::fromQLabString("24:10:00;00", TimecodeRate::fps2997Drop);
    ASSERT_TRUE(lateDrop);
    EXPECT_EQ(lateDrop->frame(), 17'982);
}

TEST(Timecode, HoursBeyondAnIntegerDoNotParse)
{
    EXPECT_FALSE(Timecode::fromQLabString("99999999999:00:00:00", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("99999999999999999999999:00:00", TimecodeRate::fps25));
}

TEST(Timecode, SpacesAroundTheTextAndEmptyPiecesAreIgnored)
{
    const auto spaced = Timecode::fromQLabString("  00:00:10:05\t", TimecodeRate::fps25);
    ASSERT_TRUE(spaced);
    EXPECT_EQ(spaced->frame(), 255);

    const auto doubled = Timecode::fromQLabString("00::00:10:05", TimecodeRate::fps25);
    ASSERT_TRUE(doubled);
    EXPECT_EQ(doubled->frame(), 255);

    const auto seconds = Timecode::fromQLabString(" 4 ", TimecodeRate::fps24);
    ASSERT_TRUE(seconds);
    EXPECT_EQ(seconds->frame(), 96);
}

TEST(Timecode, SecondsThatAreNotFiniteDoNotParse)
{
    EXPECT_FALSE(Timecode::fromQLabString("nan", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("inf", TimecodeRate::fps25));
    EXPECT_FALSE(Timecode::fromQLabString("-inf", TimecodeRate::fps25));
}

TEST(Timecode, HugeSecondsWrapIntoTheDay)
{
    const auto twoDays = Timecode::fromQLabString("172810", TimecodeRate::fps25);
    ASSERT_TRUE(twoDays);
    EXPECT_EQ(twoDays->frame(), 250);

    const auto huge = Timecode::fromQLabString("1e300", TimecodeRate::fps25);
    ASSERT_TRUE(huge);
    EXPECT_GE(huge->frame(), 0);
    EXPECT_LT(huge->frame(), Timecode::frameCountPerDay(TimecodeRate::fps25));
}

TEST(Timecode, NegativeFrameWrapsFromTheEndOfTheDay)
{
    const Timecode timecode(-1, TimecodeRate::fps24);
    EXPECT_EQ(timecode.frame(), 2'073'599);
    EXPECT_EQ(timecode.components(), hmsf(23, 59, 59, 23));
    EXPECT_EQ(Timecode(-2'073'601, TimecodeRate::fps24).frame(), 2'073'599);
}

TEST(Timecode, FrameCountsBeyondADayWrap)
{
    const auto day = Timecode::frameCountPerDay(TimecodeRate::fps2997Drop);
    EXPECT_EQ(Timecode(day, TimecodeRate::fps2997Drop).frame(), 0);
    EXPECT_EQ(Timecode(3 * day + 7, TimecodeRate::fps2997Drop).frame(), 7);
    EXPECT_EQ(Timecode(INT64_MIN, TimecodeRate::fps25).frame(), INT64_MIN % 2'160'000 + 2'160'000);
}

TEST(Timecode, DropRatesLoseEighteenFramesEveryTenMinutes)
{
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps24), 2'073'600);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps23976), 2'073'600);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps25), 2'160'000);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps24975), 2'160'000);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps30), 2'592'000);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps2997), 2'592'000);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps30Drop), 2'589'408);
    EXPECT_EQ(Timecode::frameCountPerDay(TimecodeRate::fps2997Drop), 2'589'408);
}

TEST(Timecode, NegativeSecondsDoNotMoveTheTimecode)
{
    const Timecode start(1, 0, 0, 0, TimecodeRate::fps25);
    EXPECT_EQ(start.advanced(-5.0), start);
    EXPECT_EQ(start.advanced(-0.01), start);
}

TEST(Timecode, SecondsThatAreNotFiniteDoNotMoveTheTimecode)
{
    const Timecode start(1, 0, 0, 0, TimecodeRate::fps25);
    EXPECT_EQ(start.advanced(std::numeric_limits<double>::quiet_NaN()), start);
    EXPECT_EQ(start.advanced(std::numeric_limits<double>::infinity()), start);
}

TEST(Timecode, AdvancingCountsWallClockSecondsAtTheActualRate)
{
    EXPECT_EQ(Timecode(0, TimecodeRate::fps25).advanced(10.0).frame(), 250);
    EXPECT_EQ(Timecode(0, TimecodeRate::fps2997).advanced(10.0).frame(), 299);
    EXPECT_EQ(Timecode(0, TimecodeRate::fps23976).advanced(10.0).frame(), 239);
    EXPECT_EQ(Timecode(0, TimecodeRate::fps24975).advanced(100.0).frame(), 2'497);
    EXPECT_EQ(Timecode(100, TimecodeRate::fps24).advanced(0.999 / 24.0).frame(), 100);
    EXPECT_EQ(Timecode(5, TimecodeRate::fps30).advanced(0.5).rate(), TimecodeRate::fps30);
}

TEST(Timecode, OneFramePastTheLastOfTheDayIsMidnight)
{
    const Timecode last(23, 59, 59, 29, TimecodeRate::fps30);
    EXPECT_EQ(last.formatted(), "23:59:59:29");
    EXPECT_EQ(Timecode(last.frame() + 1, last.rate()).formatted(), "00:00:00:00");
    EXPECT_EQ(last.advanced(0.04).frame(), 0);
}

TEST(Timecode, AdvancingFarWrapsIntoTheDay)
{
    const Timecode start(0, TimecodeRate::fps25);
    EXPECT_EQ(start.advanced(86'400.0 * 3 + 1.0).frame(), 25);
    const auto far = start.advanced(1e300);
    EXPECT_GE(far.frame(), 0);
    EXPECT_LT(far.frame(), Timecode::frameCountPerDay(TimecodeRate::fps25));
}

TEST(Timecode, SkippedDropLabelsLandTwoFramesEarly)
{
    const Timecode skipped(0, 1, 0, 0, TimecodeRate::fps2997Drop);
    EXPECT_EQ(skipped.frame(), 1'798);
    EXPECT_EQ(skipped.formatted(), "00:00:59;28");
}

TEST(Timecode, EqualityComparesFrameAndRate)
{
    EXPECT_EQ(Timecode(10, TimecodeRate::fps25), Timecode(10, TimecodeRate::fps25));
    EXPECT_NE(Timecode(10, TimecodeRate::fps25), Timecode(11, TimecodeRate::fps25));
    EXPECT_NE(Timecode(10, TimecodeRate::fps25), Timecode(10, TimecodeRate::fps24975));
}

TEST(Timecode, FormattedPadsEachFieldToTwoDigits)
{
    EXPECT_EQ(Timecode(1, 2, 3, 4, TimecodeRate::fps25).formatted(), "01:02:03:04");
    EXPECT_EQ(Timecode(0, TimecodeRate::fps24).formatted(), "00:00:00:00");
    EXPECT_EQ(Timecode(10, 20, 30, 5, TimecodeRate::fps30Drop).formatted(), "10:20:30;05");
}
