#include <gtest/gtest.h>

#include "qlab/TimecodeText.h"

using namespace ostrel;

TEST(TimecodeText, FindsTheStartTimeInAGeneratedCueName)
{
    EXPECT_EQ(timecodeText("Timecode 01:00:00:00 (30 fps)"), "01:00:00:00");
    EXPECT_EQ(timecodeText("LTC @ 10:20:30;15"), "10:20:30;15");
}

TEST(TimecodeText, FindsTheTimeAmongstNonAsciiText)
{
    EXPECT_EQ(timecodeText("Sc\u00e8ne 2 \u2013 00:59:58;10 \u2192"), "00:59:58;10");
}

TEST(TimecodeText, TakesASingleDigitHour)
{
    EXPECT_EQ(timecodeText("MTC 1:02:03:04"), "1:02:03:04");
}

TEST(TimecodeText, TakesTheFirstOfSeveralTimes)
{
    EXPECT_EQ(timecodeText("00:00:10:00 to 00:00:20:00"), "00:00:10:00");
}

TEST(TimecodeText, ThreeDigitHoursYieldTheirLastTwoDigits)
{
    EXPECT_EQ(timecodeText("123:45:56:12"), "23:45:56:12");
}

TEST(TimecodeText, TimesWithoutFramesOrWithOneDigitFieldsAreNotFound)
{
    EXPECT_FALSE(timecodeText("starts at 01:00:00"));
    EXPECT_FALSE(timecodeText("01:0:00:00"));
    EXPECT_FALSE(timecodeText("01:00:00.00"));
}

TEST(TimecodeText, TextWithoutATimeYieldsNothing)
{
    EXPECT_FALSE(timecodeText(""));
    EXPECT_FALSE(timecodeText("Timecode"));
}
