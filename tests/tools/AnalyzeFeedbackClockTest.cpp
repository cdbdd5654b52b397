// The feedback detector as ostrel-analyze runs it: one for the file, timed by the audio.
#include <gtest/gtest.h>

#include <optional>

#include "ostrel-analyze/AudioClockFeedback.h"

using namespace ostrel;
using namespace ostrel::analyze;

namespace {

// Loud, towering over its neighbours and free of harmonics: what the detector calls feedback
// once it has lasted a second.
constexpr SpectralPeak ringing {2500.0, 90.0, 40.0, -60.0};

MeasurementInterval withPeak(std::optional<SpectralPeak> peak)
{
    MeasurementInterval interval;
    interval.spectrum = Spectrum {};
    interval.spectrum->peak = peak;
    return interval;
}

MeasurementInterval withoutSpectrum()
{
    return MeasurementInterval {};
}

// The end time of interval `index`, a tenth of a second each.
double endOf(int index)
{
    return 0.1 * index;
}

} // namespace

TEST(AnalyzeFeedbackClockTest, DetectorRunsOnTheAudioClock)
{
    AudioClockFeedback feedback;
    for (int index = 1; index <= 3; ++index)
        EXPECT_EQ(feedback.update(withoutSpectrum(), endOf(index)), std::nullopt);
    EXPECT_EQ(feedback.update(withPeak(ringing), endOf(4)), std::nullopt);
    ASSERT_TRUE(feedback.detector().candidate());
    EXPECT_EQ(
        feedback.detector().candidate()->since, addingSeconds(AudioClockFeedback::start, endOf(4)));

    for (int index = 5; index <= 13; ++index)
        EXPECT_EQ(feedback.update(withPeak(ringing), endOf(index)), std::nullopt) << index;
    // A second of audio after the tone was first heard, give or take a tick of rounding.
    feedback.update(withPeak(ringing), endOf(14));
    EXPECT_EQ(feedback.update(withPeak(ringing), endOf(15)), ringing.frequency);
    ASSERT_TRUE(feedback.detector().warning());
    EXPECT_EQ(
        feedback.detector().warning()->since, addingSeconds(AudioClockFeedback::start, endOf(4)));
}

TEST(AnalyzeFeedbackClockTest, IntervalsWithoutSpectrumLeaveTheDetectorAlone)
{
    AudioClockFeedback feedback;
    for (int index = 4; index <= 8; ++index)
        feedback.update(withPeak(ringing), endOf(index));
    // Had these reached the detector as spectra without a peak, the tone would start over.
    for (int index = 9; index <= 12; ++index)
        EXPECT_EQ(feedback.update(withoutSpectrum(), endOf(index)), std::nullopt);
    for (int index = 13; index <= 15; ++index)
        feedback.update(withPeak(ringing), endOf(index));
    EXPECT_EQ(feedback.update(withPeak(ringing), endOf(16)), ringing.frequency);

    // Nor do they release a warning, however long they go on.
    for (int index = 17; index <= 80; ++index)
        EXPECT_EQ(feedback.update(withoutSpectrum(), endOf(index)), ringing.frequency) << index;
}

TEST(AnalyzeFeedbackClockTest, SpectraWithoutAPeakReleaseTheWarning)
{
    AudioClockFeedback feedback;
    for (int index = 4; index <= 16; ++index)
        feedback.update(withPeak(ringing), endOf(index));
    ASSERT_EQ(feedback.update(withPeak(ringing), endOf(17)), ringing.frequency);

    // Released once more than three seconds of audio have passed without the tone.
    for (int index = 18; index <= 46; ++index)
        EXPECT_EQ(feedback.update(withPeak(std::nullopt), endOf(index)), ringing.frequency)
            << index;
    feedback.update(withPeak(std::nullopt), endOf(47));
    EXPECT_EQ(feedback.update(withPeak(std::nullopt), endOf(48)), std::nullopt);
}

TEST(AnalyzeFeedbackClockTest, QuietToneIsNeverFeedback)
{
    AudioClockFeedback feedback;
    SpectralPeak quiet = ringing;
    quiet.level = 40.0;
    for (int index = 4; index <= 60; ++index)
        EXPECT_EQ(feedback.update(withPeak(quiet), endOf(index)), std::nullopt) << index;
}
