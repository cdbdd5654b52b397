#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "measurement/SPLMath.h"
#include "measurement/SignalGenerator.h"

using namespace ostrel;

namespace {

double meanSquare(const std::vector<float>& samples)
{
    double sum = 0.0;
    for (const float s : samples)
        sum += static_cast<double>(s) * s;
    return samples.empty() ? 0.0 : sum / static_cast<double>(samples.size());
}

} // namespace

TEST(SignalGenerator, TheSameSeedGivesTheSameNoiseAndAnotherSeedOtherNoise)
{
    SignalGenerator a(48000.0, SignalGenerator::demoSeed);
    SignalGenerator b(48000.0, SignalGenerator::demoSeed);
    SignalGenerator c(48000.0, 12345);
    const auto first = a.whiteNoise(0.1, 0.1);
    EXPECT_EQ(first, b.whiteNoise(0.1, 0.1));
    EXPECT_NE(first, c.whiteNoise(0.1, 0.1));
    // And the generator goes on: the next block is new noise.
    EXPECT_NE(first, a.whiteNoise(0.1, 0.1));
}

TEST(SignalGenerator, TwoCallsOfHalfTheDurationJoinInPhaseWithOneCall)
{
    SignalGenerator whole(48000.0, 1);
    SignalGenerator halves(48000.0, 1);
    const auto once = whole.sine(1000.0, 0.5, 0.1);
    auto twice = halves.sine(1000.0, 0.5, 0.05);
    const auto second = halves.sine(1000.0, 0.5, 0.05);
    twice.insert(twice.end(), second.begin(), second.end());
    ASSERT_EQ(once.size(), twice.size());
    for (std::size_t i = 0; i < once.size(); ++i)
        EXPECT_FLOAT_EQ(once[i], twice[i]) << i;
}

TEST(SignalGenerator, WhiteNoiseOverASecondHasTheAskedRms)
{
    SignalGenerator generator(48000.0, SignalGenerator::demoSeed);
    const auto noise = generator.whiteNoise(0.1, 1.0);
    ASSERT_EQ(noise.size(), 48000u);
    EXPECT_NEAR(std::sqrt(meanSquare(noise)), 0.1, 0.1 * 0.005);
    const auto [low, high] = std::minmax_element(noise.begin(), noise.end());
    EXPECT_GE(*low, -0.1 * 1.7320508075688772);
    EXPECT_LT(*high, 0.1 * 1.7320508075688772);
}

TEST(SignalGenerator, ADurationOfZeroGivesNothingAndLeavesTheStateAlone)
{
    SignalGenerator touched(48000.0, 7);
    SignalGenerator untouched(48000.0, 7);
    EXPECT_TRUE(touched.sine(440.0, 1.0, 0.0).empty());
    EXPECT_TRUE(touched.whiteNoise(0.2, 0.0).empty());
    EXPECT_TRUE(touched.silence(0.0).empty());
    EXPECT_EQ(touched.sine(440.0, 1.0, 0.01), untouched.sine(440.0, 1.0, 0.01));
    EXPECT_EQ(touched.whiteNoise(0.2, 0.01), untouched.whiteNoise(0.2, 0.01));
}

TEST(SignalGenerator, TheLengthIsTheDurationTimesTheRateTruncated)
{
    SignalGenerator generator(44100.0, 1);
    EXPECT_EQ(generator.silence(0.1).size(), 4410u);
    EXPECT_EQ(generator.sine(100.0, 1.0, 0.00001).size(), 0u);
    EXPECT_EQ(generator.whiteNoise(0.1, 1.0 / 44100.0 * 2.5).size(), 2u);
    const auto zeros = generator.silence(0.01);
    EXPECT_TRUE(std::all_of(zeros.begin(), zeros.end(), [](float s) { return s == 0.0F; }));
}

TEST(SignalGenerator, ASineOfTheAmplitudeForALevelReadsThatLevel)
{
    SignalGenerator generator(48000.0, 1);
    for (const double dbfs : {-3.0103, -20.0, -40.0}) {
        const auto tone = generator.sine(1000.0, SignalGenerator::sineAmplitude(dbfs), 1.0);
        EXPECT_NEAR(SPLMath::decibels(meanSquare(tone)), dbfs, 0.01) << dbfs;
    }
    EXPECT_NEAR(SignalGenerator::sineAmplitude(-3.0103), 1.0, 1e-4);
}

TEST(SignalGeneratorDeathTest, ANegativeOrEndlessDurationIsAProgrammingError)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    SignalGenerator generator(48000.0, 1);
    EXPECT_DEATH(generator.silence(-0.1), "no length");
    EXPECT_DEATH(generator.sine(1000.0, 1.0, std::numeric_limits<double>::infinity()), "no length");
    EXPECT_DEATH(generator.whiteNoise(0.1, std::nan("")), "no length");
}
