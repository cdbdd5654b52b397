#include <gtest/gtest.h>

#include "qlab/QLabCueTimecode.h"

using namespace ostrel;

namespace {

const Date seen = addingSeconds(Date {}, 1'700'000'000.0);

QLabCue timecodeCue(const char* start, std::optional<std::int64_t> rateIndex)
{
    QLabCue cue;
    cue.id = QStringLiteral("A1B2");
    cue.type = QStringLiteral("Timecode");
    cue.startedAt = seen;
    cue.timecodeStart = QString::fromUtf8(start);
    cue.timecodeRateIndex = rateIndex;
    return cue;
}

} // namespace

TEST(QLabCueTimecode, RateIndexOutsideQLabsRatesFallsBackToTheGivenRate)
{
    const auto settings = timecodeSettings(timecodeCue("01:00:00:00", 99), TimecodeRate::fps25);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->start, Timecode(1, 0, 0, 0, TimecodeRate::fps25));
    // The view calls such a rate assumed because the cue's own index is not a rate.
    EXPECT_FALSE(timecodeCue("01:00:00:00", 99).reportedTimecodeRate());
}

TEST(QLabCueTimecode, MissingRateIndexFallsBackToTheGivenRate)
{
    const auto settings
        = timecodeSettings(timecodeCue("00:00:01:00", std::nullopt), TimecodeRate::fps24);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->start, Timecode(24, TimecodeRate::fps24));
}

TEST(QLabCueTimecode, ReportedRateWinsOverTheFallback)
{
    const auto settings = timecodeSettings(timecodeCue("01:00:00;00", 7), TimecodeRate::fps25);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->start.rate(), TimecodeRate::fps2997Drop);
    EXPECT_EQ(settings->start.frame(), 107'892);
}

TEST(QLabCueTimecode, OutputTypeComesFromTheCue)
{
    auto cue = timecodeCue("01:00:00:00", 1);
    cue.timecodeOutputType = 1;
    const auto settings = timecodeSettings(cue, TimecodeRate::fps25);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->outputType, 1);
    EXPECT_EQ(settings->outputTitle(), "LTC");

    const auto withoutType = timecodeSettings(timecodeCue("01:00:00:00", 1), TimecodeRate::fps25);
    ASSERT_TRUE(withoutType);
    EXPECT_FALSE(withoutType->outputType);
}

TEST(QLabCueTimecode, OtherCueTypesHaveNoTimecode)
{
    auto cue = timecodeCue("01:00:00:00", 1);
    cue.type = QStringLiteral("Audio");
    EXPECT_FALSE(timecodeSettings(cue, TimecodeRate::fps25));
    EXPECT_FALSE(currentTimecode(cue, seen, TimecodeRate::fps25));
}

TEST(QLabCueTimecode, TypeIsMatchedWithoutRegardToCase)
{
    auto cue = timecodeCue("01:00:00:00", 1);
    cue.type = QStringLiteral("TIMECODE");
    EXPECT_TRUE(timecodeSettings(cue, TimecodeRate::fps25));
}

TEST(QLabCueTimecode, MissingOrUnreadableStartHasNoTimecode)
{
    auto missing = timecodeCue("", 1);
    missing.timecodeStart.reset();
    EXPECT_FALSE(timecodeSettings(missing, TimecodeRate::fps25));
    EXPECT_FALSE(timecodeSettings(timecodeCue("", 1), TimecodeRate::fps25));
    EXPECT_FALSE(timecodeSettings(timecodeCue("soon", 1), TimecodeRate::fps25));
    EXPECT_FALSE(timecodeSettings(timecodeCue("00:00:10:25", 1), TimecodeRate::fps25));
    EXPECT_FALSE(currentTimecode(timecodeCue("soon", 1), seen, TimecodeRate::fps25));
}

TEST(QLabCueTimecode, StartGivenInSecondsIsRead)
{
    const auto settings = timecodeSettings(timecodeCue("3600", 1), TimecodeRate::fps30);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->start.rate(), TimecodeRate::fps25);
    EXPECT_EQ(settings->start.frame(), 90'000);
}

TEST(QLabCueTimecode, CurrentTimecodeCarriesTheLastSampleOnByWallTime)
{
    auto cue = timecodeCue("01:00:00:00", 1);
    cue.actionElapsed = 10.0;
    cue.sampledAt = addingSeconds(seen, 30.0);
    const auto now = currentTimecode(cue, addingSeconds(seen, 32.0), TimecodeRate::fps24);
    ASSERT_TRUE(now);
    EXPECT_EQ(now->formatted(), "01:00:12:00");
}

TEST(QLabCueTimecode, CurrentTimecodeStandsStillWhilePaused)
{
    auto cue = timecodeCue("01:00:00:00", 1);
    cue.actionElapsed = 10.0;
    cue.sampledAt = addingSeconds(seen, 30.0);
    cue.isPaused = true;
    const auto now = currentTimecode(cue, addingSeconds(seen, 90.0), TimecodeRate::fps24);
    ASSERT_TRUE(now);
    EXPECT_EQ(now->formatted(), "01:00:10:00");
}

TEST(QLabCueTimecode, CurrentTimecodeWithoutASampleCountsFromWhenTheCueWasSeen)
{
    const auto cue = timecodeCue("01:00:00:00", 1);
    const auto now = currentTimecode(cue, addingSeconds(seen, 4.5), TimecodeRate::fps24);
    ASSERT_TRUE(now);
    EXPECT_EQ(now->formatted(), "01:00:04:12");
    // A date before the cue was seen does not run the timecode backwards.
    EXPECT_EQ(currentTimecode(cue, addingSeconds(seen, -4.0), TimecodeRate::fps24),
        Timecode(1, 0, 0, 0, TimecodeRate::fps25));
}

TEST(QLabCueTimecode, CurrentTimecodeRunsAtTheActualRate)
{
    auto cue = timecodeCue("00:00:00;00", 7);
    cue.actionElapsed = 10.0;
    cue.sampledAt = seen;
    const auto now = currentTimecode(cue, seen, TimecodeRate::fps25);
    ASSERT_TRUE(now);
    EXPECT_EQ(now->frame(), 299);
    EXPECT_EQ(now->formatted(), "00:00:09;29");
}
