#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "measurement/SPLMath.h"
#include "measurement/SpectrumAnalyzer.h"
#include "measurement/SpectrumBand.h"
#include "support/AllocationCounter.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

std::vector<float> square(double frequency, double amplitude, double rate, std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double phase = std::fmod(frequency * static_cast<double>(i) / rate, 1.0);
        samples[i] = static_cast<float>(phase < 0.5 ? amplitude : -amplitude);
    }
    return samples;
}

} // namespace

TEST(SpectrumAnalyzer, WindowSizeAimsAtAThirdOfASecond)
{
    EXPECT_EQ(SpectrumAnalyzer::windowSize(44100.0), 16384);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(48000.0), 16384);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(96000.0), 32768);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(8000.0), 4096);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(192000.0), 65536);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(384000.0), 65536);
    EXPECT_EQ(SpectrumAnalyzer::windowSize(1000.0), 4096);
}

TEST(SpectrumAnalyzer, NothingBeforeAShortWindowIsFull)
{
    SpectrumAnalyzer analyzer(48000.0);
    ASSERT_TRUE(analyzer.hasTransforms());
    analyzer.append(testsignals::sine(1000.0, 0.5, 48000.0, 16383));
    EXPECT_FALSE(analyzer.analyze(0.0));
    analyzer.append(std::vector<float> {0.0f});
    EXPECT_TRUE(analyzer.analyze(0.0));
}

TEST(SpectrumAnalyzer, ShortOnlyFineBandsUntilTheLongWindowFills)
{
    SpectrumAnalyzer analyzer(48000.0);
    analyzer.append(testsignals::noise(0.1, 20000));
    ASSERT_TRUE(analyzer.analyze(0.0));
    EXPECT_FALSE(analyzer.lastUsedLongWindow());
    analyzer.append(testsignals::noise(0.1, 65536 - 20000, 2));
    ASSERT_TRUE(analyzer.analyze(0.0));
    EXPECT_TRUE(analyzer.lastUsedLongWindow());
    EXPECT_TRUE(analyzer.fineBands().front().usesLongWindow);
    EXPECT_FALSE(analyzer.fineBands().back().usesLongWindow);
    EXPECT_FALSE(analyzer.fineBandsShortOnly().front().usesLongWindow);
}

TEST(SpectrumAnalyzer, FullScaleOneKilohertzSine)
{
    SpectrumAnalyzer analyzer(48000.0);
    analyzer.append(testsignals::sine(1000.0, 1.0, 48000.0, 65536));
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum);
    const double binWidth = 48000.0 / 16384.0;
    ASSERT_TRUE(spectrum->dominantFrequency);
    EXPECT_NEAR(*spectrum->dominantFrequency, 1000.0, 0.05 * binWidth);
    EXPECT_NEAR(spectrum->bandLevels[17], -3.01, 0.05);
    ASSERT_TRUE(spectrum->peak);
    EXPECT_GT(spectrum->peak->prominence, 60.0);
    EXPECT_LT(spectrum->peak->harmonicLevel, -60.0);
    EXPECT_EQ(spectrum->peak->frequency, *spectrum->dominantFrequency);
    // The fine bands around 1 kHz hold the same energy as the third-octave band.
    double fineSum = 0.0;
    for (std::size_t i = 130; i < 142; ++i)
        fineSum += SPLMath::power(spectrum->fineBandLevels[i]);
    EXPECT_NEAR(SPLMath::decibels(fineSum), -3.01, 0.05);
}

TEST(SpectrumAnalyzer, SquareWaveHarmonicLevelIsTheThirdHarmonic)
{
    // A square wave has no even harmonics and its third at a third of the fundamental's amplitude.
    // 1031.25 Hz is a whole number of bins, so the harmonics land on bins too.
    const double fundamental = 1031.25;
    SpectrumAnalyzer analyzer(48000.0);
    analyzer.append(square(fundamental, 0.5, 48000.0, 16384));
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum && spectrum->peak);
    EXPECT_NEAR(spectrum->peak->frequency, fundamental, 0.5);
    EXPECT_NEAR(spectrum->peak->harmonicLevel, 20.0 * std::log10(1.0 / 3.0), 0.5);
}

TEST(SpectrumAnalyzer, TopThirdOctaveBandIsMeasuredAt44kHzAndFloorAt32kHz)
{
    SpectrumAnalyzer at44(44100.0);
    at44.append(testsignals::noise(0.5, 16384));
    const auto measured = at44.analyze(0.0);
    ASSERT_TRUE(measured);
    EXPECT_NEAR(Spectrum::exactCenter(30), 19952.6, 0.05);
    EXPECT_GT(measured->bandLevels[30], -100.0);

    SpectrumAnalyzer at32(32000.0);
    at32.append(testsignals::noise(0.5, 16384));
    const auto capped = at32.analyze(80.0);
    ASSERT_TRUE(capped);
    EXPECT_EQ(capped->bandLevels[30], -200.0);
    EXPECT_GT(capped->bandLevels[29], -100.0);
    // Fine bands test their lower edge against Nyquist.
    for (std::size_t i = 0; i < 240; ++i) {
        if (SpectrumBand::fine()[i].lower >= 16000.0)
            EXPECT_EQ(capped->fineBandLevels[i], -200.0);
        else
            EXPECT_GT(capped->fineBandLevels[i], -100.0);
    }
}

TEST(SpectrumAnalyzer, SilenceReadsOffsetMinus200WithoutDominantFrequencyOrPeak)
{
    SpectrumAnalyzer analyzer(48000.0);
    analyzer.append(std::vector<float>(65536, 0.0f));
    const auto spectrum = analyzer.analyze(94.0);
    ASSERT_TRUE(spectrum);
    for (double level : spectrum->bandLevels)
        EXPECT_EQ(level, 94.0 - 200.0);
    for (double level : spectrum->fineBandLevels)
        EXPECT_EQ(level, 94.0 - 200.0);
    EXPECT_FALSE(spectrum->dominantFrequency);
    EXPECT_FALSE(spectrum->peak);
}

TEST(SpectrumAnalyzer, PeakNearNyquistSkipsHarmonicsBeyondTheBins)
{
    // At 32 kHz the peak search reaches 15.2 kHz; twice that is far beyond the bins.
    SpectrumAnalyzer analyzer(32000.0);
    analyzer.append(testsignals::sine(15000.0, 0.5, 32000.0, 16384));
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum && spectrum->peak);
    EXPECT_NEAR(spectrum->peak->frequency, 15000.0, 2.0);
    const double peakLevel = spectrum->peak->level;
    EXPECT_NEAR(spectrum->peak->harmonicLevel, -200.0 - peakLevel, 1e-9);
}

TEST(SpectrumAnalyzer, AppendOfABlockLongerThanTheRingKeepsOnlyItsLastSamples)
{
    SpectrumAnalyzer analyzer(48000.0);
    // Loud noise first, then a whole ring of silence in the same block.
    std::vector<float> block = testsignals::noise(0.9, 1000);
    block.resize(1000 + 65536, 0.0f);
    analyzer.append(block);
    EXPECT_EQ(analyzer.filled(), 65536);
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum);
    EXPECT_FALSE(spectrum->peak);
    EXPECT_EQ(spectrum->bandLevels[17], -200.0);
}

TEST(SpectrumAnalyzer, At384kHzThe20HzBandComesFromTheFallbackBinScaledByItsWidth)
{
    SpectrumAnalyzer analyzer(384000.0);
    ASSERT_EQ(analyzer.size(), 65536);
    const auto& band = analyzer.bands()[0];
    EXPECT_EQ(band.first, band.end);
    const double binWidth = 384000.0 / 65536.0;
    EXPECT_EQ(band.fallbackBin,
        static_cast<std::int64_t>(std::round(Spectrum::exactCenter(0) / binWidth)));
    EXPECT_NEAR(
        band.fallbackScale, Spectrum::exactCenter(0) * 0.23076751616821778 / binWidth, 1e-12);

    analyzer.append(testsignals::noise(0.5, 65536));
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum);
    EXPECT_GT(spectrum->bandLevels[0], -150.0);
}

TEST(SpectrumAnalyzer, CorrectionGainsScaleEveryBinFromOneUp)
{
    // A microphone 6 dB low everywhere above 2 kHz: corrected spectra read 6 dB higher there.
    const MicrophoneCorrection correction(
        "mic", {{20.0, 0.0}, {1000.0, 0.0}, {2000.0, -6.0}, {20000.0, -6.0}});
    SpectrumAnalyzer plain(48000.0);
    SpectrumAnalyzer corrected(48000.0);
    corrected.setCorrection(correction);
    EXPECT_TRUE(corrected.hasCorrection());
    const auto noise = testsignals::noise(0.3, 65536);
    plain.append(noise);
    corrected.append(noise);
    const auto a = plain.analyze(0.0);
    const auto b = corrected.analyze(0.0);
    ASSERT_TRUE(a && b);
    EXPECT_NEAR(b->bandLevels[25] - a->bandLevels[25], 6.0, 0.01); // 5 kHz
    EXPECT_NEAR(b->bandLevels[10] - a->bandLevels[10], 0.0, 0.01); // 200 Hz
    EXPECT_NEAR(b->fineBandLevels[20] - a->fineBandLevels[20], 0.0, 0.01);
    corrected.setCorrection(std::nullopt);
    EXPECT_FALSE(corrected.hasCorrection());
}

TEST(SpectrumAnalyzer, AppendAndAnalyzeDoNotAllocate)
{
    SpectrumAnalyzer analyzer(48000.0);
    const auto block = testsignals::noise(0.3, 4800);
    std::size_t allocations = 0;
    volatile double sink = 0.0;
    {
        testsupport::AllocationCounter counter;
        for (int i = 0; i < 20; ++i) {
            analyzer.append(block);
            if (auto spectrum = analyzer.analyze(0.0)) sink = spectrum->bandLevels[17];
        }
        allocations = counter.count();
    }
    EXPECT_TRUE(analyzer.lastUsedLongWindow());
    EXPECT_GT(sink, -100.0);
    EXPECT_EQ(allocations, 0u);
}
