#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "measurement/LevelRange.h"
#include "measurement/SPLMath.h"
#include "support/Signals.h"

using namespace ostrel;

TEST(SPLMath, DecibelsOfZeroPowerIsTheFloor)
{
    EXPECT_EQ(SPLMath::decibels(0.0), -200.0);
}

TEST(SPLMath, DecibelsOfNegativePowerIsTheFloor)
{
    EXPECT_EQ(SPLMath::decibels(-1.0), -200.0);
}

TEST(SPLMath, DecibelsAtOrBelowTheFloorPowerReadExactlyMinus200)
{
    EXPECT_EQ(SPLMath::decibels(1e-20), -200.0);
    EXPECT_EQ(SPLMath::decibels(1e-30), -200.0);
    EXPECT_EQ(SPLMath::decibels(std::numeric_limits<double>::quiet_NaN()), -200.0);
}

TEST(SPLMath, DecibelsOfUnitPowerIsZero)
{
    EXPECT_EQ(SPLMath::decibels(1.0), 0.0);
    EXPECT_NEAR(SPLMath::decibels(0.5), -3.0103, 1e-4);
}

TEST(SPLMath, AmplitudeDecibelsAreTwentyLog)
{
    EXPECT_NEAR(SPLMath::decibelsOfAmplitude(0.1), -20.0, 1e-12);
    EXPECT_EQ(SPLMath::decibelsOfAmplitude(0.0), -200.0);
}

TEST(SPLMath, PowerInvertsDecibels)
{
    for (double level : {-120.0, -23.0, 0.0, 94.0}) {
        EXPECT_NEAR(SPLMath::decibels(SPLMath::power(level)), level, 1e-9);
    }
}

TEST(SPLMath, SoundPressureLevelAndCalibrationOffset)
{
    EXPECT_DOUBLE_EQ(SPLMath::soundPressureLevel(-23.0, 117.0), 94.0);
    EXPECT_DOUBLE_EQ(SPLMath::calibrationOffset(94.0, -23.0), 117.0);
}

TEST(SPLMath, TimeWeightingCoefficientsAt48kHz)
{
    EXPECT_DOUBLE_EQ(SPLMath::timeWeightingCoefficient(0.125, 48000.0), 0.00016665277854932548);
    EXPECT_DOUBLE_EQ(SPLMath::timeWeightingCoefficient(1.0, 48000.0), 2.083311632095075e-05);
}

TEST(SPLMath, MeanSquareOfAFullScaleSineIsAHalf)
{
    const auto samples = testsignals::sine(1000.0, 1.0, 48000.0, 48000);
    EXPECT_NEAR(SPLMath::meanSquare(samples), 0.5, 1e-6);
    EXPECT_NEAR(SPLMath::rms(samples), std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(SPLMath::decibels(SPLMath::meanSquare(samples)), -3.0103, 1e-4);
}

TEST(SPLMath, MeanSquareOfNothingIsZero)
{
    EXPECT_EQ(SPLMath::meanSquare(std::vector<float> {}), 0.0);
    EXPECT_EQ(SPLMath::rms(std::vector<float> {}), 0.0);
}

TEST(SPLMath, EnergyAverageIsThePowerMean)
{
    EXPECT_FALSE(SPLMath::energyAverage(std::vector<double> {}).has_value());
    const std::vector<double> levels {90.0, 80.0};
    const double expected = 10.0 * std::log10((1e9 + 1e8) / 2.0);
    EXPECT_NEAR(*SPLMath::energyAverage(levels), expected, 1e-9);
}

TEST(SPLMath, ReferenceWeightingsAreZeroAtOneKilohertzAndFollowTheStandardTable)
{
    EXPECT_NEAR(SPLMath::referenceAWeighting(1000.0), 0.0, 1e-12);
    EXPECT_NEAR(SPLMath::referenceCWeighting(1000.0), 0.0, 1e-12);
    // Values of IEC 61672-1 Table 3 at the exact base-ten frequencies, rounded to 0.1 dB there.
    const double f31_5 = 1000.0 * std::pow(10.0, -1.5);
    EXPECT_NEAR(SPLMath::referenceAWeighting(f31_5), -39.4, 0.05);
    EXPECT_NEAR(SPLMath::referenceAWeighting(100.0), -19.1, 0.05);
    EXPECT_NEAR(SPLMath::referenceAWeighting(10000.0), -2.5, 0.05);
    EXPECT_NEAR(SPLMath::referenceCWeighting(f31_5), -3.0, 0.05);
    EXPECT_NEAR(SPLMath::referenceCWeighting(10000.0), -4.4, 0.05);
}

TEST(LevelRange, ExactlyTheElevatedThresholdIsElevated)
{
    EXPECT_EQ(LevelRanges::level(85.0, 85.0, 95.0), LevelRange::elevated);
    EXPECT_EQ(LevelRanges::level(84.99, 85.0, 95.0), LevelRange::normal);
}

TEST(LevelRange, ExactlyTheHighThresholdIsHigh)
{
    EXPECT_EQ(LevelRanges::level(95.0, 85.0, 95.0), LevelRange::high);
}

TEST(LevelRange, CrossedThresholdsGiveHigh)
{
    EXPECT_EQ(LevelRanges::level(90.0, 95.0, 85.0), LevelRange::high);
    EXPECT_EQ(LevelRanges::title(LevelRange::elevated), "Elevated");
}
