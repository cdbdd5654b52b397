#include <gtest/gtest.h>

#include "measurement/CalibrationCollector.h"
#include "measurement/SPLMath.h"

using namespace ostrel;

namespace {

// A tenth of a second at 48 kHz with the given raw level.
MeasurementInterval tenth(double rawDBFS, bool clipped = false)
{
    MeasurementInterval interval;
    interval.sampleCount = 4800;
    interval.sampleRate = 48000.0;
    interval.rawEnergy = SPLMath::power(rawDBFS) * 4800.0;
    interval.clipped = clipped;
    return interval;
}

CalibrationCollector collect(const std::vector<MeasurementInterval>& intervals)
{
    CalibrationCollector collector;
    for (const auto& interval : intervals)
        collector.add(interval);
    return collector;
}

} // namespace

TEST(CalibrationCollector, SteadyToneAtMinus20WithReference94GivesOffset114)
{
    const auto result = collect(std::vector<MeasurementInterval>(30, tenth(-20.0))).result(94.0);
    ASSERT_EQ(result.kind, CalibrationResult::Kind::success);
    EXPECT_NEAR(result.offset, 114.0, 1e-9);
    EXPECT_NEAR(result.measuredDBFS, -20.0, 1e-9);
    EXPECT_FALSE(result.failureMessage());
}

TEST(CalibrationCollector, NoIntervalsOrAllInsideTheSettleTimeGiveNoSignal)
{
    EXPECT_EQ(CalibrationCollector().result(94.0).kind, CalibrationResult::Kind::noSignal);
    // Five tenths end exactly at the settle time: none counts.
    const auto settling = collect(std::vector<MeasurementInterval>(5, tenth(-20.0)));
    EXPECT_EQ(settling.sampleCount(), 0);
    EXPECT_EQ(settling.result(94.0).kind, CalibrationResult::Kind::noSignal);
    EXPECT_EQ(settling.measuredDuration(), 0.0);
}

TEST(CalibrationCollector, AClipDuringTheFirstHalfSecondIsNotSeen)
{
    std::vector<MeasurementInterval> intervals {tenth(-1.0, true)};
    intervals.resize(30, tenth(-20.0));
    EXPECT_EQ(collect(intervals).result(94.0).kind, CalibrationResult::Kind::success);
}

TEST(CalibrationCollector, AClipAfterwardsIsOverloadEvenWhenTheLevelIsUnstableToo)
{
    std::vector<MeasurementInterval> intervals(10, tenth(-20.0));
    intervals.push_back(tenth(-1.0, true));
    intervals.push_back(tenth(-40.0));
    EXPECT_EQ(collect(intervals).result(94.0).kind, CalibrationResult::Kind::overload);
}

TEST(CalibrationCollector, ASpreadOfExactlyTwoDecibelsSucceedsAndMoreIsUnstable)
{
    std::vector<MeasurementInterval> intervals(10, tenth(-20.0));
    intervals.push_back(tenth(-18.0));
    const auto atLimit = collect(intervals);
    ASSERT_DOUBLE_EQ(atLimit.shortTermLevels().back() - atLimit.shortTermLevels().front(), 2.0);
    EXPECT_EQ(atLimit.result(94.0).kind, CalibrationResult::Kind::success);

    intervals.push_back(tenth(-17.9));
    EXPECT_EQ(collect(intervals).result(94.0).kind, CalibrationResult::Kind::unstable);
}

TEST(CalibrationCollector, ALevelOfExactlyMinus80IsNoSignal)
{
    const auto collector = collect(std::vector<MeasurementInterval>(20, tenth(-80.0)));
    EXPECT_EQ(collector.result(94.0).kind, CalibrationResult::Kind::noSignal);
    EXPECT_EQ(collect(std::vector<MeasurementInterval>(20, tenth(-79.9))).result(94.0).kind,
        CalibrationResult::Kind::success);
}

TEST(CalibrationCollector, DigitalSilenceReadsMinus200AndIsNoSignal)
{
    MeasurementInterval silence = tenth(-20.0);
    silence.rawEnergy = 0.0;
    EXPECT_EQ(silence.rawLevelDBFS(), -200.0);
    EXPECT_EQ(collect(std::vector<MeasurementInterval>(20, silence)).result(94.0).kind,
        CalibrationResult::Kind::noSignal);
}

TEST(CalibrationCollector, EmptyIntervalsAddTimeButAreNotCounted)
{
    CalibrationCollector collector;
    MeasurementInterval empty;
    empty.sampleCount = 0;
    collector.add(empty);
    EXPECT_EQ(collector.sampleCount(), 0);
    EXPECT_TRUE(collector.shortTermLevels().empty());
}

TEST(CalibrationCollector, EveryFailureHasItsMessage)
{
    using Kind = CalibrationResult::Kind;
    EXPECT_EQ(*CalibrationResult::failure(Kind::noSignal).failureMessage(),
        "Ostrel Live couldn't hear the calibrator. Check that it's switched on and the "
        "microphone is fully inserted.");
    EXPECT_EQ(*CalibrationResult::failure(Kind::unstable).failureMessage(),
        "The level wasn't steady. Make sure the room is quiet and the calibrator isn't "
        "moving.");
    EXPECT_EQ(*CalibrationResult::failure(Kind::overload).failureMessage(),
        "The input is clipping. Turn down the gain on your audio interface and try again.");
}
