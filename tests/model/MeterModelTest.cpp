#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "measurement/SPLMath.h"
#include "model/MeterModel.h"

using namespace ostrel;
using std::chrono::milliseconds;

namespace {

const Date base = Date {} + std::chrono::hours(24 * 365 * 56);

Date at(int ms)
{
    return base + milliseconds(ms);
}

MeasurementInterval interval(double level, double rawDBFS = -20.0, bool clipped = false)
{
    MeasurementInterval value;
    value.sampleCount = 1;
    value.sampleRate = 10.0; // a tenth of a second in one sample keeps the numbers exact
    value.energy = SPLMath::power(level);
    value.peakPower = SPLMath::power(level + 3.0);
    value.maxLevel = level + 1.0;
    value.level = level;
    value.rawEnergy = SPLMath::power(rawDBFS);
    value.clipped = clipped;
    return value;
}

Spectrum spectrum(double bandLevel, std::optional<SpectralPeak> peak = std::nullopt,
    std::optional<double> dominant = std::nullopt)
{
    Spectrum value;
    value.bandLevels.fill(bandLevel);
    value.fineBandLevels.fill(bandLevel - 9.0);
    value.peak = peak;
    value.dominantFrequency = dominant;
    return value;
}

MeasurementInterval withSpectrum(double level, const Spectrum& s, double rawDBFS = -20.0)
{
    auto value = interval(level, rawDBFS);
    value.spectrum = s;
    return value;
}

// A ringing tone that the detector confirms after a second.
const SpectralPeak ringing {2500.0, 80.0, 35.0, -40.0};

} // namespace

TEST(MeterModel, RawLevelOfExactlyMinus100CountsAsSignal)
{
    MeterModel meter;
    const auto quiet = interval(40.0, -100.0);
    ASSERT_EQ(quiet.rawLevelDBFS(), -100.0);
    for (int i = 0; i < 40; ++i)
        meter.ingest(quiet, at(100 * i));
    EXPECT_TRUE(meter.hasSignal());
}

TEST(MeterModel, SignalIsStillPresentAt1Point9SecondsOfSilenceAndGoneFrom2Seconds)
{
    MeterModel meter;
    meter.ingest(interval(70.0), at(0));
    const auto silent = interval(-200.0, -200.0);
    meter.ingest(silent, at(100)); // silence starts
    meter.ingest(silent, at(2000));
    EXPECT_TRUE(meter.hasSignal()) << "1.9 s";
    meter.ingest(silent, at(2100));
    EXPECT_FALSE(meter.hasSignal()) << "2.0 s";
    // Any single interval at signal level brings it back at once.
    meter.ingest(interval(70.0), at(2200));
    EXPECT_TRUE(meter.hasSignal());
}

TEST(MeterModel, OneClippedIntervalHoldsTheFlagForExactlyOneSecond)
{
    MeterModel meter;
    meter.ingest(interval(100.0, -1.0, true), at(0));
    EXPECT_TRUE(meter.isClipping());
    meter.ingest(interval(100.0), at(900));
    EXPECT_TRUE(meter.isClipping());
    meter.ingest(interval(100.0), at(1000));
    EXPECT_FALSE(meter.isClipping());
}

TEST(MeterModel, GraphPointsComeAtLeastAQuarterSecondApart)
{
    MeterModel meter;
    for (int i = 0; i <= 10; ++i)
        meter.ingest(interval(60.0 + i), at(100 * i));
    const auto& points = meter.graphPoints();
    ASSERT_EQ(points.size(), 4u);
    EXPECT_EQ(points[0].date, at(0));
    EXPECT_EQ(points[1].date, at(300));
    EXPECT_EQ(points[2].date, at(600));
    EXPECT_EQ(points[3].date, at(900));
    EXPECT_EQ(points[1].level, 63.0);
    EXPECT_EQ(points[3].id, points[0].id + 3);
}

TEST(MeterModel, PublishedStatisticsLagTheLiveOnesByUpToHalfASecondAndResetClearsBoth)
{
    MeterModel meter;
    meter.ingest(interval(80.0), at(0));
    EXPECT_EQ(meter.statistics().sampleCount, 1);
    meter.ingest(interval(80.0), at(100));
    meter.ingest(interval(80.0), at(400));
    EXPECT_EQ(meter.liveStatistics().sampleCount, 3);
    EXPECT_EQ(meter.statistics().sampleCount, 1);
    meter.ingest(interval(80.0), at(500));
    EXPECT_EQ(meter.statistics().sampleCount, 4);
    meter.resetStatistics();
    EXPECT_TRUE(meter.statistics().isEmpty());
    EXPECT_TRUE(meter.liveStatistics().isEmpty());
}

TEST(MeterModel, WithoutSignalTheDominantFrequencyGoesAndFeedbackIsNotUpdatedButAWarningStays)
{
    MeterModel meter;
    // A ringing tone held for over a second raises a warning.
    for (int i = 0; i <= 12; ++i)
        meter.ingest(withSpectrum(80.0, spectrum(60.0, ringing, 2500.0)), at(100 * i));
    ASSERT_TRUE(meter.feedbackWarning());
    EXPECT_EQ(meter.dominantFrequency(), 2500.0);

    // Silence: after two seconds the signal is gone.
    const auto silentSpectrum = spectrum(-120.0, ringing, 2500.0);
    int t = 1300;
    for (; t <= 3300; t += 100)
        meter.ingest(withSpectrum(0.0, silentSpectrum, -150.0), at(t));
    ASSERT_FALSE(meter.hasSignal());
    const auto lastConfirmed = meter.feedbackDetector().lastConfirmed();
    // Within a quarter second the dominant frequency is gone.
    meter.ingest(withSpectrum(0.0, silentSpectrum, -150.0), at(t));
    meter.ingest(withSpectrum(0.0, silentSpectrum, -150.0), at(t + 100));
    meter.ingest(withSpectrum(0.0, silentSpectrum, -150.0), at(t + 200));
    EXPECT_FALSE(meter.dominantFrequency());
    // The detector was not fed, so the warning is not released even after its release time.
    for (t += 300; t < 9000; t += 100)
        meter.ingest(withSpectrum(0.0, silentSpectrum, -150.0), at(t));
    EXPECT_TRUE(meter.feedbackWarning());
    EXPECT_EQ(meter.feedbackDetector().lastConfirmed(), lastConfirmed);
    meter.setDetectsFeedback(false);
    EXPECT_FALSE(meter.feedbackWarning());
}

TEST(MeterModel, TwoIntervalsWithEqualLevelNotifyLevelObserversOnce)
{
    MeterModel meter;
    int notified = 0;
    QObject::connect(&meter, &MeterModel::levelChanged, [&] { ++notified; });
    meter.ingest(interval(72.5), at(0));
    meter.ingest(interval(72.5), at(100));
    EXPECT_EQ(notified, 1);
    meter.ingest(interval(72.6), at(200));
    EXPECT_EQ(notified, 2);
}

TEST(MeterModel, AConstantThirdOctaveBandKeepsPeakEqualToLevel)
{
    MeterModel meter;
    for (int i = 0; i < 50; ++i)
        meter.ingest(withSpectrum(70.0, spectrum(55.0)), at(100 * i));
    ASSERT_TRUE(meter.bandLevels() && meter.bandPeaks());
    for (std::size_t band = 0; band < 31; ++band) {
        EXPECT_NEAR((*meter.bandLevels())[band], 55.0, 1e-9);
        EXPECT_EQ((*meter.bandPeaks())[band], (*meter.bandLevels())[band]);
    }
}

TEST(MeterModel, BandPeaksHoldThenFallTenDecibelsPerSecondButNotBelowTheLevel)
{
    MeterModel meter;
    meter.ingest(withSpectrum(70.0, spectrum(80.0)), at(0));
    // From here on the band is silent: smoothed levels decay by 0.7 in power each spectrum.
    int t = 100;
    for (; t <= 1500; t += 100)
        meter.ingest(withSpectrum(70.0, spectrum(-200.0)), at(t));
    EXPECT_EQ((*meter.bandPeaks())[17], 80.0) << "held for 1.5 s";
    meter.ingest(withSpectrum(70.0, spectrum(-200.0)), at(1600));
    EXPECT_NEAR((*meter.bandPeaks())[17], 79.0, 1e-9) << "falls 10 dB/s once the hold is over";
    for (t = 1700; t <= 12000; t += 100)
        meter.ingest(withSpectrum(70.0, spectrum(-200.0)), at(t));
    EXPECT_GE((*meter.bandPeaks())[17], (*meter.bandLevels())[17]);
}

TEST(MeterModel, BandLevelsBlendInPowerNotInDecibels)
{
    EXPECT_NEAR(MeterModel::blend(60.0, 60.0), 60.0, 1e-12);
    EXPECT_NEAR(MeterModel::blend(60.0, -200.0), 60.0 + 10.0 * std::log10(0.7), 1e-9);
    EXPECT_NEAR(MeterModel::blend(-200.0, -200.0), -200.0 + 0.0, 1e-9);
}

TEST(MeterModel, FineDisplaysGroupTheSmoothedFineBandsForEachFinerResolution)
{
    MeterModel meter;
    meter.ingest(withSpectrum(70.0, spectrum(50.0)), at(0));
    const auto sixth = meter.display(SpectrumResolution::sixth);
    const auto twelfth = meter.display(SpectrumResolution::twelfth);
    const auto fine = meter.display(SpectrumResolution::twentyFourth);
    ASSERT_TRUE(sixth && twelfth && fine);
    EXPECT_EQ(sixth->levels.size(), 60u);
    EXPECT_EQ(twelfth->levels.size(), 120u);
    EXPECT_EQ(fine->levels.size(), 240u);
    EXPECT_NEAR(sixth->levels[0], 41.0 + 10.0 * std::log10(4.0), 1e-9);
    EXPECT_EQ(sixth->peaks, sixth->levels);
    EXPECT_EQ(meter.spectrogram().count(), 1);
    const auto third = meter.display(SpectrumResolution::third);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->levels.size(), 31u);
}

TEST(MeterModel, RaisingGraphDurationGrowsTheSpectrogramKeepingItsColumnsAndLoweringDropsTheOldest)
{
    MeterModel meter;
    EXPECT_EQ(meter.spectrogram().capacity(), 610);
    for (int i = 0; i < 100; ++i)
        meter.ingest(withSpectrum(70.0, spectrum(40.0 + 0.1 * i)), at(100 * i));
    ASSERT_EQ(meter.spectrogram().count(), 100);
    const float newest = meter.spectrogram().level(99, 0);

    meter.setGraphDuration(120.0);
    EXPECT_EQ(meter.spectrogram().capacity(), 1210);
    EXPECT_EQ(meter.spectrogram().count(), 100);
    EXPECT_EQ(meter.spectrogram().level(99, 0), newest);

    meter.setGraphDuration(5.0);
    EXPECT_EQ(meter.spectrogram().capacity(), 60);
    EXPECT_EQ(meter.spectrogram().count(), 60);
    EXPECT_EQ(meter.spectrogram().level(59, 0), newest);
}

TEST(MeterModel, GraphKeepsOneSpareSecondAndMarkersOlderThanTheWindowGo)
{
    MeterModel meter;
    meter.setGraphDuration(2.0);
    meter.addMarker("Q1", at(0));
    for (int i = 0; i <= 40; ++i)
        meter.ingest(interval(60.0), at(100 * i));
    // Points every 0.3 s; the newest at 3.9 s; cutoff 3.9 - 3 = 0.9 s.
    EXPECT_EQ(meter.graphPoints().front().date, at(900));
    EXPECT_TRUE(meter.markers().empty());
    meter.addMarker("Q2", at(4000));
    ASSERT_EQ(meter.markers().size(), 1u);
    EXPECT_EQ(meter.markers()[0].label, "Q2");
}

TEST(MeterModel, SpectrogramCapacityIsTenColumnsASecondPlusTen)
{
    EXPECT_EQ(MeterModel::spectrogramCapacity(60.0), 610);
    EXPECT_EQ(MeterModel::spectrogramCapacity(30.5), 315);
}

TEST(MeterModel, ResetAllStartsMeasuringAfreshButKeepsSettingsAndPointIds)
{
    MeterModel meter;
    meter.setGraphDuration(30.0);
    meter.setDetectsFeedback(false);
    for (int i = 0; i < 10; ++i)
        meter.ingest(withSpectrum(70.0, spectrum(50.0), -1.0), at(100 * i));
    const auto lastId = meter.graphPoints().back().id;
    meter.resetAll();
    EXPECT_FALSE(meter.level());
    EXPECT_TRUE(meter.graphPoints().empty());
    EXPECT_FALSE(meter.bandLevels());
    EXPECT_EQ(meter.spectrogram().count(), 0);
    EXPECT_TRUE(meter.fineDisplays().empty());
    EXPECT_TRUE(meter.statistics().isEmpty());
    EXPECT_EQ(meter.graphDuration(), 30.0);
    EXPECT_FALSE(meter.detectsFeedback());
    meter.ingest(interval(70.0), at(2000));
    EXPECT_EQ(meter.graphPoints().back().id, lastId + 1);
}

TEST(MeterModel, SuspendingDetectionClearsTheWarningAtOnce)
{
    MeterModel meter;
    for (int i = 0; i <= 12; ++i)
        meter.ingest(withSpectrum(80.0, spectrum(60.0, ringing)), at(100 * i));
    ASSERT_TRUE(meter.feedbackWarning());
    meter.setSuspendsFeedbackDetection(true);
    EXPECT_FALSE(meter.feedbackWarning());
    for (int i = 13; i <= 40; ++i)
        meter.ingest(withSpectrum(80.0, spectrum(60.0, ringing)), at(100 * i));
    EXPECT_FALSE(meter.feedbackWarning());
}

TEST(MeterModel, RestoreStatisticsSetsBothLiveAndPublished)
{
    MeterModel meter;
    LevelStatistics stored;
    stored.add(interval(90.0));
    meter.restoreStatistics(stored);
    EXPECT_EQ(meter.statistics(), stored);
    EXPECT_EQ(meter.liveStatistics(), stored);
}
