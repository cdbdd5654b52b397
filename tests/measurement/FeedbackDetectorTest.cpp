#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "measurement/FeedbackDetector.h"
#include "support/IntervalTicks.h"

using namespace ostrel;

namespace {

const Date base = testsupport::tickBase;
using testsupport::tick;

SpectralPeak tone(double frequency, double level, double prominence, double harmonicLevel = -40.0)
{
    return SpectralPeak {frequency, level, prominence, harmonicLevel};
}

// Feeds ticks first..last (inclusive) and returns how many of them returned a warning.
int feed(FeedbackDetector& detector, int first, int last, const SpectralPeak& peak)
{
    int warned = 0;
    for (int index = first; index <= last; ++index)
        if (detector.update(peak, tick(index))) ++warned;
    return warned;
}

} // namespace

TEST(FeedbackDetector, SteadyToneOfModerateProminenceNeverConfirms)
{
    FeedbackDetector detector;
    EXPECT_EQ(feed(detector, 0, 50, tone(1000.0, 55.0, 25.0)), 0);
    ASSERT_TRUE(detector.candidate());
    EXPECT_EQ(detector.candidate()->since, base);
    EXPECT_FALSE(detector.lastConfirmed());
}

TEST(FeedbackDetector, StronglyProminentToneConfirmsOnTheFirstSpectrumAfterOneSecond)
{
    FeedbackDetector detector;
    const auto peak = tone(1000.0, 55.0, 30.0);
    EXPECT_EQ(feed(detector, 0, 9, peak), 0);

    EXPECT_EQ(detector.update(peak, tick(10)), (FeedbackWarning {1000.0, base}));
    EXPECT_EQ(detector.lastConfirmed(), tick(10));
    ASSERT_TRUE(detector.candidate());
    EXPECT_EQ(detector.candidate()->since, base);
}

TEST(FeedbackDetector, ToneRisingThreeDecibelsWithinTheSecondConfirmsAtOneSecond)
{
    FeedbackDetector detector;
    for (int index = 0; index < 10; ++index)
        EXPECT_FALSE(detector.update(tone(1000.0, 60.0 + index * 3.0 / 10.0, 25.0), tick(index)));

    EXPECT_EQ(
        detector.update(tone(1000.0, 63.0, 25.0), tick(10)), (FeedbackWarning {1000.0, base}));
}

TEST(FeedbackDetector, ToneRisingLessThanThreeDecibelsDoesNotConfirm)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 60.0, 25.0), tick(0));
    EXPECT_EQ(feed(detector, 1, 30, tone(1000.0, 62.9, 25.0)), 0);
}

TEST(FeedbackDetector, HarmonicsAtTheLimitStillQualify)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 70.0, 25.0, -25.0), base);
    EXPECT_TRUE(detector.candidate());
}

TEST(FeedbackDetector, HarmonicsAboveTheLimitDoNotQualify)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 70.0, 25.0, -24.9), base);
    EXPECT_FALSE(detector.candidate());
}

TEST(FeedbackDetector, PeakExactlyAtMinimumProminenceAndLevelQualifies)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 55.0, 20.0), base);
    ASSERT_TRUE(detector.candidate());
    EXPECT_EQ(*detector.candidate(), (FeedbackDetector::Candidate {1000.0, base, 55.0}));
}

TEST(FeedbackDetector, PeakJustBelowMinimumLevelDropsTheCandidate)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 60.0, 25.0), tick(0));
    detector.update(tone(1000.0, 54.9, 25.0), tick(1));
    EXPECT_FALSE(detector.candidate());
}

TEST(FeedbackDetector, FrequencyJumpOfTwoPercentRestartsTheCandidateAndItsSecond)
{
    FeedbackDetector detector;
    EXPECT_EQ(feed(detector, 0, 5, tone(1000.0, 60.0, 30.0)), 0);
    detector.update(tone(1020.0, 60.0, 30.0), tick(6));
    ASSERT_TRUE(detector.candidate());
    EXPECT_EQ(*detector.candidate(), (FeedbackDetector::Candidate {1020.0, tick(6), 60.0}));

    EXPECT_EQ(feed(detector, 7, 15, tone(1020.0, 60.0, 30.0)), 0);
    EXPECT_EQ(
        detector.update(tone(1020.0, 60.0, 30.0), tick(16)), (FeedbackWarning {1020.0, tick(6)}));
}

TEST(FeedbackDetector, DriftWithinTheToleranceAveragesTheCandidateFrequency)
{
    FeedbackDetector detector;
    detector.update(tone(1000.0, 60.0, 25.0), tick(0));
    detector.update(tone(1009.0, 61.0, 25.0), tick(1));
    ASSERT_TRUE(detector.candidate());
    EXPECT_DOUBLE_EQ(detector.candidate()->frequency, 1004.5);
    EXPECT_EQ(detector.candidate()->since, base);
    EXPECT_EQ(detector.candidate()->startLevel, 60.0);
}

TEST(FeedbackDetector, WarningStaysThreeSecondsAfterTheLastConfirmationThenDrops)
{
    FeedbackDetector detector;
    feed(detector, 0, 10, tone(1000.0, 60.0, 30.0));
    ASSERT_EQ(detector.lastConfirmed(), tick(10));

    const auto quiet = tone(1000.0, 40.0, 5.0);
    EXPECT_EQ(feed(detector, 11, 40, quiet), 30);
    EXPECT_EQ(
        detector.update(quiet, addingSeconds(tick(10), 3.0)), (FeedbackWarning {1000.0, base}));
    EXPECT_FALSE(detector.update(quiet, tick(41)));
    EXPECT_FALSE(detector.warning());
}

TEST(FeedbackDetector, AbsentPeakReleasesLikeANonQualifyingOne)
{
    FeedbackDetector detector;
    feed(detector, 0, 10, tone(1000.0, 60.0, 30.0));

    EXPECT_TRUE(detector.update(std::nullopt, tick(11)));
    EXPECT_FALSE(detector.candidate());
    EXPECT_TRUE(detector.update(std::nullopt, tick(40)));
    EXPECT_FALSE(detector.update(std::nullopt, tick(41)));
}

TEST(FeedbackDetector, ConfirmationAtTheSamePitchKeepsTheWarningsFrequencyAndStart)
{
    FeedbackDetector detector;
    feed(detector, 0, 10, tone(1000.0, 60.0, 30.0));
    EXPECT_EQ(
        detector.update(tone(1005.0, 60.0, 30.0), tick(11)), (FeedbackWarning {1000.0, base}));
    EXPECT_EQ(detector.lastConfirmed(), tick(11));
}

TEST(FeedbackDetector, SecondToneMoreThanOnePercentAwayReplacesTheWarning)
{
    FeedbackDetector detector;
    feed(detector, 0, 10, tone(1000.0, 60.0, 30.0));

    for (int index = 11; index <= 20; ++index)
        EXPECT_EQ(detector.update(tone(2000.0, 60.0, 30.0), tick(index)),
            (FeedbackWarning {1000.0, base}));
    EXPECT_EQ(
        detector.update(tone(2000.0, 60.0, 30.0), tick(21)), (FeedbackWarning {2000.0, tick(11)}));
}

TEST(FeedbackDetector, ClearRemovesCandidateWarningAndLastConfirmation)
{
    FeedbackDetector detector;
    feed(detector, 0, 10, tone(1000.0, 60.0, 30.0));
    ASSERT_TRUE(detector.candidate() && detector.warning() && detector.lastConfirmed());

    detector.clear();
    EXPECT_FALSE(detector.candidate());
    EXPECT_FALSE(detector.warning());
    EXPECT_FALSE(detector.lastConfirmed());
}
