// A field added to an interval, a spectrum or a peak must not vanish silently from recordings:
// this file stops compiling until the frame layout declares it.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "sessions/RecordingFormat.h"

using namespace ostrel;
namespace Format = ostrel::RecordingFormat;

namespace {

// Stands in for any field in an aggregate initialiser.
struct AnyField {
    template <class T> operator T() const; // never defined: only used in unevaluated contexts
};

template <class T, std::size_t... Is> constexpr bool initialisableWith(std::index_sequence<Is...>)
{
    return requires
    {
        T {(void(Is), AnyField {})...};
    };
}

// An aggregate takes at most one initialiser per field, so the largest count it accepts is its
// number of fields. The bound only stops a runaway for a type that is not an aggregate.
template <class T, std::size_t N = 0> constexpr std::size_t fieldCount()
{
    static_assert(N < 64, "not an aggregate with a countable number of fields");
    if constexpr (initialisableWith<T>(std::make_index_sequence<N + 1> {}))
        return fieldCount<T, N + 1>();
    else
        return N;
}

static_assert(fieldCount<MeasurementInterval>()
        == Format::intervalFieldCount + Format::intervalExposureFieldCount,
    "MeasurementInterval's fields changed: extend the frame layout, encode and decode in "
    "RecordingFormat, then RecordingFormat::intervalFieldCount");
static_assert(fieldCount<Spectrum>() == Format::spectrumFieldCount,
    "Spectrum's fields changed: extend the frame layout, encode and decode in RecordingFormat, "
    "then RecordingFormat::spectrumFieldCount");
static_assert(fieldCount<SpectralPeak>() == Format::peakFieldCount,
    "SpectralPeak's fields changed: extend the frame layout, encode and decode in "
    "RecordingFormat, then RecordingFormat::peakFieldCount");

// A second line for a field whose type changes, or one that the count misses: the types, in
// order, that encode and decode handle.
struct IntervalAsRecorded {
    std::int64_t sampleCount;
    double sampleRate;
    double energy;
    double peakPower;
    double maxLevel;
    double level;
    double rawEnergy;
    bool clipped;
    std::optional<Spectrum> spectrum;
    double exposureEnergy;
    double exposurePeakPower;
};
static_assert(sizeof(MeasurementInterval) == sizeof(IntervalAsRecorded),
    "MeasurementInterval's layout changed: check RecordingFormat's encode and decode");

// Differs from the default in every field and every band, and holds only values that a frame
// stores exactly: floats for the 32-bit fields, hundredths of a dB for the bands.
MeasurementInterval populatedInterval()
{
    MeasurementInterval interval;
    interval.sampleCount = 4410;
    interval.sampleRate = 44100.0;
    interval.energy = 2.718281828459045e7;
    interval.peakPower = 6.5e6;
    interval.maxLevel = 101.75;
    interval.level = 99.5;
    interval.rawEnergy = 0.0314159265358979;
    interval.clipped = true;
    Spectrum spectrum;
    for (std::size_t i = 0; i < spectrum.bandLevels.size(); ++i)
        spectrum.bandLevels[i] = 20.0 + static_cast<double>(i) * 2.25;
    for (std::size_t i = 0; i < spectrum.fineBandLevels.size(); ++i)
        spectrum.fineBandLevels[i] = -150.0 + static_cast<double>(i) * 0.5;
    spectrum.dominantFrequency = 315.5;
    spectrum.peak = SpectralPeak {630.25, 77.5, 12.75, -18.25};
    interval.spectrum = spectrum;
    return interval;
}

template <std::size_t N> bool noElementIs(const std::array<double, N>& levels, double value)
{
    for (double level : levels)
        if (level == value) return false;
    return true;
}

} // namespace

TEST(RecordingFrameFields, TheCountsMatchTheStructs)
{
    EXPECT_EQ(fieldCount<MeasurementInterval>(),
        Format::intervalFieldCount + Format::intervalExposureFieldCount);
    EXPECT_EQ(fieldCount<Spectrum>(), Format::spectrumFieldCount);
    EXPECT_EQ(fieldCount<SpectralPeak>(), Format::peakFieldCount);
}

// Without this, a field that kept its default could be dropped by decode unnoticed.
TEST(RecordingFrameFields, ThePopulatedIntervalDiffersFromTheDefaultEverywhere)
{
    const MeasurementInterval interval = populatedInterval();
    const MeasurementInterval blank;
    const auto& [sampleCount, sampleRate, energy, peakPower, maxLevel, level, rawEnergy, clipped,
        spectrum, exposureEnergy, exposurePeakPower]
        = interval;
    EXPECT_NE(sampleCount, blank.sampleCount);
    EXPECT_NE(sampleRate, blank.sampleRate);
    EXPECT_NE(energy, blank.energy);
    EXPECT_NE(peakPower, blank.peakPower);
    EXPECT_NE(maxLevel, blank.maxLevel);
    EXPECT_NE(level, blank.level);
    EXPECT_NE(rawEnergy, blank.rawEnergy);
    EXPECT_NE(clipped, blank.clipped);
    ASSERT_NE(spectrum, blank.spectrum);

    const Spectrum blankSpectrum;
    const auto& [bandLevels, dominantFrequency, peak, fineBandLevels] = *spectrum;
    EXPECT_TRUE(noElementIs(bandLevels, 0.0));
    EXPECT_NE(dominantFrequency, blankSpectrum.dominantFrequency);
    EXPECT_TRUE(noElementIs(fineBandLevels, 0.0));
    ASSERT_NE(peak, blankSpectrum.peak);

    const SpectralPeak blankPeak;
    const auto& [frequency, peakLevel, prominence, harmonicLevel] = *peak;
    EXPECT_NE(frequency, blankPeak.frequency);
    EXPECT_NE(peakLevel, blankPeak.level);
    EXPECT_NE(prominence, blankPeak.prominence);
    EXPECT_NE(harmonicLevel, blankPeak.harmonicLevel);
}

TEST(RecordingFrameFields, EveryFieldOfAPopulatedIntervalSurvivesEncodeAndDecode)
{
    const RecordedFrame frame {7.25, 7.5, populatedInterval()};

    const std::optional<RecordedFrame> decoded
        = Format::decode(Format::encode(frame), 0, /*includeSpectrum=*/true);

    ASSERT_TRUE(decoded.has_value());
    const MeasurementInterval& got = decoded->interval;
    const MeasurementInterval& sent = frame.interval;
    EXPECT_EQ(decoded->audioTime, frame.audioTime);
    EXPECT_EQ(decoded->wallTime, frame.wallTime);
    EXPECT_EQ(got.sampleCount, sent.sampleCount);
    EXPECT_EQ(got.sampleRate, sent.sampleRate);
    EXPECT_EQ(got.energy, sent.energy);
    EXPECT_EQ(got.peakPower, sent.peakPower);
    EXPECT_EQ(got.maxLevel, sent.maxLevel);
    EXPECT_EQ(got.level, sent.level);
    EXPECT_EQ(got.rawEnergy, sent.rawEnergy);
    EXPECT_EQ(got.clipped, sent.clipped);
    ASSERT_TRUE(got.spectrum.has_value());
    EXPECT_EQ(got.spectrum->bandLevels, sent.spectrum->bandLevels);
    EXPECT_EQ(got.spectrum->fineBandLevels, sent.spectrum->fineBandLevels);
    EXPECT_EQ(got.spectrum->dominantFrequency, sent.spectrum->dominantFrequency);
    EXPECT_EQ(got.spectrum->peak, sent.spectrum->peak);
    // Catches a field the lines above do not name.
    EXPECT_EQ(*decoded, frame);
}
