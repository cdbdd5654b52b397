#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "measurement/SPLMath.h"
#include "measurement/SPLProcessor.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

constexpr double rate = 48000.0;

SPLProcessor processor(FrequencyWeighting weighting = FrequencyWeighting::z,
    TimeWeighting response = TimeWeighting::fast, double offset = 0.0)
{
    return SPLProcessor(rate, weighting, response, offset);
}

// A tilted microphone: the correction lifts highs, so weighted energy of noise changes.
MicrophoneCorrection tiltedMicrophone()
{
    return MicrophoneCorrection(
        "tilted.txt", {{20.0, 0.0}, {1000.0, 0.0}, {10000.0, -6.0}, {20000.0, -6.0}});
}

} // namespace

TEST(SPLProcessor, FullScaleSineReadsMinusThreeDecibelsOnceSettledAndClips)
{
    auto spl = processor();
    spl.process(testsignals::sine(1000.0, 1.0, rate, 48000));
    const auto interval = spl.takeInterval();
    EXPECT_NEAR(interval.level, -3.0103, 0.01);
    EXPECT_TRUE(interval.clipped);
    EXPECT_NEAR(interval.leq(), -3.0103, 0.001);
    EXPECT_NEAR(interval.peakLevel(), 0.0, 0.001);
}

TEST(SPLProcessor, SineJustBelowTheClipThresholdDoesNotClipAndAtItDoes)
{
    auto spl = processor();
    // A quarter-period sine reaches its amplitude exactly at sample 12 of 48 per cycle.
    spl.process(testsignals::sine(1000.0, 0.998, rate, 4800));
    EXPECT_FALSE(spl.takeInterval().clipped);
    spl.process(std::vector<float> {0.0f, 0.999f, 0.0f});
    EXPECT_TRUE(spl.takeInterval().clipped);
    spl.process(std::vector<float> {0.0f, -0.999f});
    EXPECT_TRUE(spl.takeInterval().clipped);
    spl.process(std::vector<float> {0.0f, 0.99899f});
    EXPECT_FALSE(spl.takeInterval().clipped);
}

TEST(SPLProcessor, NaNDoesNotTripTheClipTest)
{
    auto spl = processor();
    spl.process(std::vector<float> {std::nanf("")});
    EXPECT_FALSE(spl.takeInterval().clipped);
}

TEST(SPLProcessor, SilenceReadsTheFloorWhateverTheCalibration)
{
    for (double offset : {0.0, 120.0}) {
        auto spl = processor(FrequencyWeighting::a, TimeWeighting::fast, offset);
        spl.process(std::vector<float>(4800, 0.0f));
        const auto interval = spl.takeInterval();
        EXPECT_EQ(interval.level, -200.0) << offset;
        EXPECT_EQ(interval.maxLevel, -200.0) << offset;
        EXPECT_EQ(interval.leq(), -200.0) << offset;
        EXPECT_EQ(interval.peakLevel(), -200.0) << offset;
    }
}

TEST(SPLProcessor, RawEnergyIgnoresWeightingCorrectionAndCalibrationWhileEnergyFollowsAll)
{
    const auto samples = testsignals::noise(0.3, 4800);
    double plainRawEnergy = 0.0;
    for (float s : samples)
        plainRawEnergy += static_cast<double>(s) * s;

    SPLProcessor plain(rate, FrequencyWeighting::z, TimeWeighting::fast, 0.0);
    SPLProcessor weighted(rate, FrequencyWeighting::a, TimeWeighting::fast, 0.0);
    SPLProcessor calibrated(rate, FrequencyWeighting::z, TimeWeighting::fast, 20.0);
    SPLProcessor corrected(
        rate, FrequencyWeighting::z, TimeWeighting::fast, 0.0, tiltedMicrophone());
    std::vector<MeasurementInterval> intervals;
    for (auto* spl : {&plain, &weighted, &calibrated, &corrected}) {
        spl->process(samples);
        intervals.push_back(spl->takeInterval());
    }
    for (const auto& interval : intervals) {
        EXPECT_NEAR(interval.rawEnergy, plainRawEnergy, plainRawEnergy * 1e-12);
    }
    const double energy = intervals[0].energy;
    EXPECT_NEAR(energy, plainRawEnergy, plainRawEnergy * 1e-12);
    EXPECT_GT(std::fabs(SPLMath::decibels(intervals[1].energy / energy)), 0.5);
    EXPECT_NEAR(SPLMath::decibels(intervals[2].energy / energy), 20.0, 1e-9);
    EXPECT_GT(std::fabs(SPLMath::decibels(intervals[3].energy / energy)), 0.5);
}

TEST(SPLProcessor, SlowResponseMaxFollowsTheSlowDetector)
{
    // A short loud burst: Fast rises far higher than Slow does.
    std::vector<float> burst = testsignals::sine(1000.0, 0.5, rate, 2400);
    burst.resize(4800, 0.0f);

    auto fast = processor(FrequencyWeighting::z, TimeWeighting::fast);
    auto slow = processor(FrequencyWeighting::z, TimeWeighting::slow);
    fast.process(burst);
    slow.process(burst);
    const auto fastInterval = fast.takeInterval();
    const auto slowInterval = slow.takeInterval();

    // Max of one-pole detectors after 2400 samples of a steady power p: p (1 - (1 - a)^2400).
    const double p = 0.125;
    const double slowMax = p * (1.0 - std::pow(1.0 - slow.slowAlpha(), 2400.0));
    const double fastMax = p * (1.0 - std::pow(1.0 - fast.fastAlpha(), 2400.0));
    EXPECT_NEAR(slowInterval.maxLevel, SPLMath::decibels(slowMax), 0.05);
    EXPECT_NEAR(fastInterval.maxLevel, SPLMath::decibels(fastMax), 0.05);
    EXPECT_LT(slowInterval.maxLevel, fastInterval.maxLevel - 5.0);
}

TEST(SPLProcessor, SwitchingResponseBetweenIntervalsReadsTheOtherRunningDetectorAtOnce)
{
    auto spl = processor(FrequencyWeighting::z, TimeWeighting::fast);
    spl.process(testsignals::sine(1000.0, 0.5, rate, 48000 * 8));
    const double fastLevel = spl.takeInterval().level;
    spl.setResponse(TimeWeighting::slow);
    spl.process(testsignals::sine(1000.0, 0.5, rate, 480));
    const auto slowInterval = spl.takeInterval();
    // Both have settled on the same tone: the switch reads no jump and no restart from zero.
    EXPECT_NEAR(slowInterval.level, fastLevel, 0.05);
    EXPECT_NEAR(slowInterval.level, SPLMath::decibels(0.125), 0.05);
}

TEST(SPLProcessor, EmptyIntervalHasZeroCountAndFloorRawLevelWithoutDividingByZero)
{
    auto spl = processor();
    const auto interval = spl.takeInterval();
    EXPECT_EQ(interval.sampleCount, 0);
    EXPECT_EQ(interval.rawLevelDBFS(), -200.0);
    EXPECT_EQ(interval.energy, 0.0);
}

TEST(SPLProcessor, EmptySpanDoesNothing)
{
    auto spl = processor();
    spl.process(std::vector<float> {});
    EXPECT_EQ(spl.pendingSampleCount(), 0);
}

TEST(SPLProcessor, CalibrationOffsetChangesTheReadingAtOnceWithoutDisturbingDetectors)
{
    auto spl = processor(FrequencyWeighting::a);
    spl.process(testsignals::sine(1000.0, 0.1, rate, 48000));
    const double before = spl.currentLevel();
    spl.setCalibrationOffset(100.0);
    EXPECT_NEAR(spl.currentLevel(), before + 100.0, 1e-9);
    EXPECT_NEAR(spl.calibrationGain(), 1e10, 1e-3);
}

TEST(SPLProcessor, SettingTheSameWeightingKeepsTheFilterState)
{
    auto spl = processor(FrequencyWeighting::a);
    spl.process(testsignals::noise(0.5, 100));
    const double z1 = spl.filter().highPass().z1;
    ASSERT_NE(z1, 0.0);
    spl.setWeighting(FrequencyWeighting::a);
    EXPECT_EQ(spl.filter().highPass().z1, z1);
    spl.setWeighting(FrequencyWeighting::c);
    EXPECT_EQ(spl.filter().highPass().z1, 0.0);
    EXPECT_EQ(spl.filter().weighting(), FrequencyWeighting::c);
}

TEST(SPLProcessor, IntervalFieldsAreCalibratedOnTheWayOut)
{
    auto spl = processor(FrequencyWeighting::z, TimeWeighting::fast, 10.0);
    std::vector<float> block(100, 0.5f);
    spl.process(block);
    const auto interval = spl.takeInterval();
    EXPECT_EQ(interval.sampleCount, 100);
    EXPECT_DOUBLE_EQ(interval.energy, 100 * 0.25 * 10.0);
    EXPECT_DOUBLE_EQ(interval.peakPower, 0.25 * 10.0);
    EXPECT_DOUBLE_EQ(interval.rawEnergy, 25.0);
    EXPECT_NEAR(interval.leq(), SPLMath::decibels(0.25) + 10.0, 1e-9);
    // The next interval starts from zero while the detectors run on.
    EXPECT_EQ(spl.pendingSampleCount(), 0);
    EXPECT_GT(spl.currentLevel(), -200.0);
}

TEST(SPLProcessor, CorrectionIsAppliedBeforeTheWeightingAndCanBeRemoved)
{
    SPLProcessor spl(rate, FrequencyWeighting::z, TimeWeighting::fast, 0.0, tiltedMicrophone());
    EXPECT_TRUE(spl.hasCorrectionFilter());
    // The tilted microphone reads 6 dB low at 10 kHz; the filter lifts it back.
    spl.process(testsignals::sine(10000.0, 0.1, rate, 48000));
    const double corrected = spl.takeInterval().leq();
    EXPECT_NEAR(corrected, SPLMath::decibels(0.005) + 6.0, 0.3);
    spl.setCorrection(std::nullopt);
    EXPECT_FALSE(spl.hasCorrectionFilter());
    spl.process(testsignals::sine(10000.0, 0.1, rate, 4800));
    EXPECT_NEAR(spl.takeInterval().leq(), SPLMath::decibels(0.005), 0.01);
}

TEST(SPLProcessor, ResetClearsDetectorsAndAccumulators)
{
    auto spl = processor(FrequencyWeighting::a);
    spl.process(testsignals::noise(0.5, 1000));
    spl.reset();
    EXPECT_EQ(spl.pendingSampleCount(), 0);
    EXPECT_EQ(spl.currentLevel(), -200.0);
    EXPECT_EQ(spl.filter().highPass().z1, 0.0);
}
