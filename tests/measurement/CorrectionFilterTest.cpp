#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "measurement/CorrectionFilter.h"
#include "measurement/MicrophoneCorrection.h"
#include "support/AllocationCounter.h"

using namespace ostrel;

namespace {

constexpr double rate = 48000.0;
constexpr std::size_t centre = CorrectionFilter::tapCount / 2;
// Signals here stay within about 1; float sums of a thousand taps, by either form, agree to this.
constexpr float floatRounding = 1e-5f;

double decibels(double amplitude)
{
    return 20.0 * std::log10(amplitude);
}

MicrophoneCorrection flat(double level)
{
    return MicrophoneCorrection("flat", {{20, level}, {1000, level}, {20000, level}});
}

// +6 dB at 8 kHz against 1 kHz, rising evenly in log frequency.
MicrophoneCorrection tilted()
{
    return MicrophoneCorrection("tilted", {{20, 0}, {1000, 0}, {8000, 6}, {20000, 6}});
}

MicrophoneCorrection plateauAbove2kHz(double level)
{
    return MicrophoneCorrection("plateau", {{20, 0}, {1000, 0}, {2000, level}, {20000, level}});
}

std::vector<float> noise(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> distribution(-1.0f, 1.0f);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = distribution(generator);
    return samples;
}

std::vector<float> sine(double frequency, std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<float>(
            std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(i) / rate));
    return samples;
}

std::vector<float> filteredWhole(CorrectionFilter& filter, const std::vector<float>& samples)
{
    const auto out = filter.process(samples);
    return {out.begin(), out.end()};
}

std::vector<float> filteredInBlocks(CorrectionFilter& filter, const std::vector<float>& samples,
    const std::vector<std::size_t>& sizes)
{
    std::vector<float> result;
    std::size_t position = 0;
    for (std::size_t i = 0; position < samples.size(); ++i) {
        const std::size_t size = std::min(sizes[i % sizes.size()], samples.size() - position);
        const auto out = filter.process(std::span(samples).subspan(position, size));
        result.insert(result.end(), out.begin(), out.end());
        position += size;
    }
    return result;
}

double rms(std::span<const float> samples)
{
    double sum = 0.0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

} // namespace

TEST(CorrectionFilter, HasTheAnnouncedLength)
{
    EXPECT_EQ(CorrectionFilter::design(tilted(), rate).size(),
        static_cast<std::size_t>(CorrectionFilter::tapCount));
    EXPECT_EQ(CorrectionFilter(flat(0), 44100.0).taps().size(),
        static_cast<std::size_t>(CorrectionFilter::tapCount));
}

TEST(CorrectionFilter, FlatFileGivesDominantCentreTapAndUnitMagnitude)
{
    const CorrectionFilter filter(flat(2.5), rate);
    const auto& taps = filter.taps();
    EXPECT_NEAR(taps[centre], 1.0f, 1e-4f);
    for (std::size_t i = 0; i < taps.size(); ++i) {
        if (i != centre) {
            EXPECT_LT(std::abs(taps[i]), 1e-4f) << "tap " << i;
        }
    }
    for (double f = 50.0; f <= 15000.0; f *= std::pow(2.0, 1.0 / 12.0))
        EXPECT_NEAR(decibels(filter.magnitude(f, rate)), 0.0, 0.01) << f << " Hz";
}

TEST(CorrectionFilter, TapsAreSymmetricAboutTheCentre)
{
    const auto taps = CorrectionFilter::design(tilted(), rate);
    for (std::size_t i = 0; i < centre; ++i)
        EXPECT_NEAR(taps[i], taps[taps.size() - 1 - i], 1e-6f) << "tap " << i;
    EXPECT_GT(std::abs(taps[centre]), std::abs(taps[centre - 1]));
    EXPECT_NEAR(taps.front(), 0.0f, 1e-9f); // the window closes at both ends
}

TEST(CorrectionFilter, TiltedFileGivesTheInverseMagnitude)
{
    const CorrectionFilter filter(tilted(), rate);
    EXPECT_NEAR(decibels(filter.magnitude(8000, rate)), -6.0, 0.5);
    EXPECT_NEAR(decibels(filter.magnitude(1000, rate)), 0.0, 0.5);
    EXPECT_NEAR(decibels(filter.magnitude(200, rate)), 0.0, 0.1);
    EXPECT_NEAR(decibels(filter.magnitude(15000, rate)), -6.0, 0.1);
    // Halfway up the slope in log frequency.
    EXPECT_NEAR(decibels(filter.magnitude(std::sqrt(1000.0 * 8000.0), rate)), -3.0, 0.1);
}

TEST(CorrectionFilter, TiltedFileWorksAtOtherSampleRates)
{
    for (const double sampleRate : {44100.0, 96000.0}) {
        const CorrectionFilter filter(tilted(), sampleRate);
        EXPECT_NEAR(decibels(filter.magnitude(8000, sampleRate)), -6.0, 0.5) << sampleRate;
        EXPECT_NEAR(decibels(filter.magnitude(300, sampleRate)), 0.0, 0.2) << sampleRate;
    }
}

TEST(CorrectionFilter, ResponseAboveTwentyDecibelsIsCorrectedByTwenty)
{
    const CorrectionFilter filter(plateauAbove2kHz(25), rate);
    EXPECT_NEAR(filter.magnitude(8000, rate), 0.1, 0.1 * 0.06);
    EXPECT_NEAR(decibels(filter.magnitude(8000, rate)), -20.0, 0.5);
}

TEST(CorrectionFilter, ResponseBelowMinusTwentyDecibelsIsCorrectedByTwenty)
{
    const CorrectionFilter filter(plateauAbove2kHz(-25), rate);
    EXPECT_NEAR(decibels(filter.magnitude(8000, rate)), 20.0, 0.5);
}

TEST(CorrectionFilter, ImpulseResponseIsTheTaps)
{
    std::vector<float> impulse(CorrectionFilter::tapCount + 10, 0.0f);
    impulse[0] = 1.0f;
    CorrectionFilter direct(tilted(), rate);
    const auto summed = direct.process(impulse, CorrectionFilter::Form::direct);
    for (std::size_t i = 0; i < direct.taps().size(); ++i)
        EXPECT_EQ(summed[i], direct.taps()[direct.taps().size() - 1 - i]) << i;
    for (std::size_t i = direct.taps().size(); i < summed.size(); ++i)
        EXPECT_EQ(summed[i], 0.0f);

    CorrectionFilter fft(tilted(), rate);
    const auto transformed = fft.process(impulse, CorrectionFilter::Form::overlapSave);
    for (std::size_t i = 0; i < fft.taps().size(); ++i)
        EXPECT_NEAR(transformed[i], fft.taps()[fft.taps().size() - 1 - i], floatRounding) << i;
    for (std::size_t i = fft.taps().size(); i < transformed.size(); ++i)
        EXPECT_NEAR(transformed[i], 0.0f, floatRounding);
}

TEST(CorrectionFilter, TheFftFormEqualsDirectConvolutionWithinFloatRounding)
{
    const auto input = noise(20000, 21);
    CorrectionFilter reference(tilted(), rate);
    const auto expected = reference.process(input, CorrectionFilter::Form::direct);
    const std::vector<float> summed(expected.begin(), expected.end());
    // Every transform size, and a block larger than the largest transform holds.
    for (const std::size_t block : {1u, 64u, 480u, 1026u, 1027u, 3000u, 7170u, 7171u, 20000u}) {
        CorrectionFilter fft(tilted(), rate);
        std::vector<float> result;
        for (std::size_t position = 0; position < input.size(); position += block) {
            const std::size_t size = std::min(block, input.size() - position);
            const auto out = fft.process(
                std::span(input).subspan(position, size), CorrectionFilter::Form::overlapSave);
            result.insert(result.end(), out.begin(), out.end());
        }
        ASSERT_EQ(result.size(), summed.size());
        for (std::size_t i = 0; i < result.size(); ++i)
            ASSERT_NEAR(result[i], summed[i], floatRounding)
                << "sample " << i << ", block " << block;
    }
}

TEST(CorrectionFilter, TheFftFormAllocatesNothingOnceMade)
{
    CorrectionFilter filter(tilted(), rate);
    const auto large = noise(9000, 6);
    filter.process(large, CorrectionFilter::Form::overlapSave);
    const testsupport::AllocationCounter allocations;
    for (const std::size_t size : {9000u, 480u, 1u, 4000u})
        filter.process(std::span(large).first(size), CorrectionFilter::Form::overlapSave);
    EXPECT_EQ(allocations.count(), 0u);
}

TEST(CorrectionFilter, BlocksFromTheMeasuredSizeOnGoThroughTheFftForm)
{
    const auto input = noise(CorrectionFilter::overlapSaveFromBlock, 23);
    CorrectionFilter chosen(tilted(), rate);
    CorrectionFilter fft(tilted(), rate);
    const auto automatic = chosen.process(input);
    const auto transformed = fft.process(input, CorrectionFilter::Form::overlapSave);
    EXPECT_TRUE(std::equal(automatic.begin(), automatic.end(), transformed.begin()));

    const auto shorter = std::span(input).first(CorrectionFilter::overlapSaveFromBlock - 1);
    CorrectionFilter small(tilted(), rate);
    CorrectionFilter direct(tilted(), rate);
    const auto a = small.process(shorter);
    const auto b = direct.process(shorter, CorrectionFilter::Form::direct);
    EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin()));
}

TEST(CorrectionFilter, FlatFilterDelaysByTheCentreTap)
{
    CorrectionFilter filter(flat(-4), rate);
    const auto input = noise(3000, 11);
    const auto out = filteredWhole(filter, input);
    for (std::size_t i = 0; i < centre; ++i)
        EXPECT_NEAR(out[i], 0.0f, 1e-4f);
    for (std::size_t i = centre; i < out.size(); ++i)
        EXPECT_NEAR(out[i], input[i - centre], 1e-4f) << i;
}

TEST(CorrectionFilter, OutputIsContinuousAcrossBlockBoundaries)
{
    const auto input = noise(12000, 3);
    CorrectionFilter whole(tilted(), rate);
    const auto expected = filteredWhole(whole, input);

    const std::vector<std::vector<std::size_t>> blockings {
        {1}, {7}, {31, 32, 33}, {64}, {1021, 1022, 1023, 1024}, {5000, 1, 2, 3}, {2047, 17}};
    for (const auto& sizes : blockings) {
        CorrectionFilter split(tilted(), rate);
        const auto result = filteredInBlocks(split, input, sizes);
        ASSERT_EQ(result.size(), expected.size());
        for (std::size_t i = 0; i < result.size(); ++i)
            ASSERT_NEAR(result[i], expected[i], floatRounding)
                << "sample " << i << ", first block " << sizes.front();
    }
}

TEST(CorrectionFilter, EmptyBlockChangesNothing)
{
    const auto input = noise(2000, 5);
    CorrectionFilter whole(tilted(), rate);
    const auto expected = filteredWhole(whole, input);

    CorrectionFilter split(tilted(), rate);
    auto result = filteredWhole(split, std::vector<float>(input.begin(), input.begin() + 700));
    EXPECT_TRUE(split.process({}).empty());
    const auto rest = filteredWhole(split, std::vector<float>(input.begin() + 700, input.end()));
    result.insert(result.end(), rest.begin(), rest.end());
    ASSERT_EQ(result.size(), expected.size());
    for (std::size_t i = 0; i < result.size(); ++i)
        ASSERT_NEAR(result[i], expected[i], floatRounding);
}

TEST(CorrectionFilter, ResetForgetsEarlierSamples)
{
    const auto input = noise(1500, 8);
    CorrectionFilter fresh(tilted(), rate);
    const auto expected = filteredWhole(fresh, input);

    CorrectionFilter used(tilted(), rate);
    filteredWhole(used, noise(4000, 9));
    used.reset();
    const auto result = filteredWhole(used, input);
    ASSERT_EQ(result.size(), expected.size());
    for (std::size_t i = 0; i < result.size(); ++i)
        ASSERT_EQ(result[i], expected[i]) << i;
}

TEST(CorrectionFilter, SineComesOutScaledByTheMagnitude)
{
    CorrectionFilter filter(tilted(), rate);
    for (const double frequency : {250.0, 3000.0, 8000.0, 12000.0}) {
        filter.reset();
        const auto out = filteredWhole(filter, sine(frequency, 24000));
        const auto settled = std::span(out).subspan(CorrectionFilter::tapCount);
        const double expected = filter.magnitude(frequency, rate) / std::sqrt(2.0);
        EXPECT_NEAR(rms(settled) / expected, 1.0, 1e-3) << frequency << " Hz";
    }
}

TEST(CorrectionFilter, RepeatedBlocksOfTheSameSizeDoNotReallocate)
{
    CorrectionFilter filter(tilted(), rate);
    const auto block = noise(480, 2);
    const float* first = filter.process(block).data();
    const testsupport::AllocationCounter allocations;
    for (int i = 0; i < 20; ++i) {
        const auto out = filter.process(block);
        EXPECT_EQ(out.data(), first);
        EXPECT_EQ(out.size(), block.size());
    }
    const auto smaller = filter.process(std::span(block).first(100));
    EXPECT_EQ(smaller.data(), first);
    EXPECT_EQ(smaller.size(), 100u);
    EXPECT_EQ(allocations.count(), 0u);
}

TEST(CorrectionFilter, AfterALargeBlockNoBlockUpToItsSizeAllocates)
{
    CorrectionFilter filter(tilted(), rate);
    filter.process(noise(64, 4));
    const auto large = noise(4096, 6);
    filter.process(large);
    const testsupport::AllocationCounter allocations;
    for (int i = 0; i < 5; ++i)
        filter.process(large);
    filter.process(std::span(large).first(1));
    EXPECT_EQ(allocations.count(), 0u);
}
