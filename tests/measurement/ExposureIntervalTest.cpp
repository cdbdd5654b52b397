// Every interval carries what exposure is measured by, whatever weighting the meter shows: the
// A-weighted energy and the C-weighted peak, corrected and calibrated like the meter's own.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "measurement/SPLMath.h"
#include "measurement/SPLProcessor.h"
#include "support/AllocationCounter.h"

using namespace ostrel;

namespace {

constexpr double rate = 48000.0;

// Tones low, middle and high, where A and C part ways, and a little noise.
std::vector<float> program(std::size_t count)
{
    std::mt19937 random(5);
    std::normal_distribution<float> noise(0.0f, 0.01f);
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / rate;
        samples[i]
            = static_cast<float>(0.2 * std::sin(2 * M_PI * 50.0 * t)
                  + 0.1 * std::sin(2 * M_PI * 1000.0 * t) + 0.05 * std::sin(2 * M_PI * 12000.0 * t))
            + noise(random);
    }
    return samples;
}

MeasurementInterval measure(FrequencyWeighting weighting, const std::vector<float>& samples,
    double offset = 100.0, std::optional<MicrophoneCorrection> correction = std::nullopt)
{
    SPLProcessor spl(rate, weighting, TimeWeighting::fast, offset, std::move(correction));
    // Blocks of the size the audio thread delivers, across a whole second.
    for (std::size_t at = 0; at < samples.size(); at += 480)
        spl.process(std::span<const float>(samples).subspan(at, 480));
    return spl.takeInterval();
}

} // namespace

TEST(ExposureInterval, TheExposureEnergyIsTheAWeightedEnergyWhateverTheMeterShows)
{
    const auto samples = program(48000);
    const MeasurementInterval a = measure(FrequencyWeighting::a, samples);
    for (const FrequencyWeighting weighting : {FrequencyWeighting::c, FrequencyWeighting::z}) {
        const MeasurementInterval other = measure(weighting, samples);
        EXPECT_NEAR(other.exposureEnergy / a.energy, 1.0, 1e-9);
        // The meter's own reading differs: the 50 Hz tone counts under C and Z.
        EXPECT_GT(other.energy, a.energy * 2.0);
    }
    EXPECT_EQ(a.exposureEnergy, a.energy);
}

TEST(ExposureInterval, TheExposurePeakIsTheCWeightedPeakWhateverTheMeterShows)
{
    const auto samples = program(48000);
    const MeasurementInterval c = measure(FrequencyWeighting::c, samples);
    for (const FrequencyWeighting weighting : {FrequencyWeighting::a, FrequencyWeighting::z}) {
        const MeasurementInterval other = measure(weighting, samples);
        EXPECT_NEAR(other.exposurePeakPower / c.peakPower, 1.0, 1e-9);
    }
    EXPECT_EQ(c.exposurePeakPower, c.peakPower);
}

TEST(ExposureInterval, CalibrationAndCorrectionApplyToTheExposureAsToTheMeter)
{
    const auto samples = program(48000);
    const MicrophoneCorrection tilted(
        "tilted.txt", {{20.0, 0.0}, {1000.0, 0.0}, {10000.0, -6.0}, {20000.0, -6.0}});
    const MeasurementInterval plain = measure(FrequencyWeighting::z, samples, 100.0);
    const MeasurementInterval louder = measure(FrequencyWeighting::z, samples, 110.0);
    EXPECT_NEAR(louder.exposureEnergy / plain.exposureEnergy, 10.0, 1e-9);
    EXPECT_NEAR(louder.exposurePeakPower / plain.exposurePeakPower, 10.0, 1e-9);
    const MeasurementInterval correctedZ = measure(FrequencyWeighting::z, samples, 100.0, tilted);
    const MeasurementInterval correctedA = measure(FrequencyWeighting::a, samples, 100.0, tilted);
    EXPECT_NEAR(correctedZ.exposureEnergy / correctedA.energy, 1.0, 1e-9);
    EXPECT_GT(correctedZ.exposureEnergy, plain.exposureEnergy);
}

TEST(ExposureInterval, NonFiniteSamplesAreSilenceForTheExposureToo)
{
    auto samples = program(4800);
    samples[100] = std::nanf("");
    samples[200] = INFINITY;
    for (const FrequencyWeighting weighting :
        {FrequencyWeighting::a, FrequencyWeighting::c, FrequencyWeighting::z}) {
        const MeasurementInterval interval = measure(weighting, samples);
        EXPECT_TRUE(std::isfinite(interval.exposureEnergy));
        EXPECT_TRUE(std::isfinite(interval.exposurePeakPower));
        EXPECT_GT(interval.exposureEnergy, 0.0);
    }
}

TEST(ExposureInterval, TheExposureFiltersAllocateNothingPerBlock)
{
    const auto samples = program(48000);
    for (const FrequencyWeighting weighting :
        {FrequencyWeighting::a, FrequencyWeighting::c, FrequencyWeighting::z}) {
        SPLProcessor spl(rate, weighting, TimeWeighting::fast, 100.0);
        spl.process(std::span<const float>(samples).subspan(0, 480));
        testsupport::AllocationCounter counter;
        for (std::size_t at = 480; at < samples.size(); at += 480) {
            spl.process(std::span<const float>(samples).subspan(at, 480));
            if (at % 4800 == 0) spl.takeInterval();
        }
        EXPECT_EQ(counter.count(), 0u);
    }
}

TEST(ExposureInterval, AResetClearsTheExposureOfTheOpenInterval)
{
    const auto samples = program(4800);
    SPLProcessor spl(rate, FrequencyWeighting::z, TimeWeighting::fast, 100.0);
    spl.process(samples);
    spl.reset();
    const MeasurementInterval interval = spl.takeInterval();
    EXPECT_EQ(interval.exposureEnergy, 0.0);
    EXPECT_EQ(interval.exposurePeakPower, 0.0);
}
