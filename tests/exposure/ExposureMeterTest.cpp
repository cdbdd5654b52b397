#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "exposure/ExposureMeter.h"
#include "measurement/SPLMath.h"
#include "support/AllocationCounter.h"

using namespace ostrel;

namespace {

// An interval of a tenth of a second at a steady A-weighted level.
ExposureSample steady(double level, double duration = 0.1, double peak = 0.0)
{
    return {SPLMath::power(level) * duration, duration, peak > 0.0 ? SPLMath::power(peak) : 0.0};
}

// The window's level added up from scratch: every interval whose start lies within the last
// `window` seconds.
double bruteForce(const std::vector<ExposureSample>& samples, double window)
{
    double total = 0.0;
    for (const ExposureSample& sample : samples)
        total += sample.duration;
    double energy = 0.0;
    double seconds = 0.0;
    double start = total;
    for (auto it = samples.rbegin(); it != samples.rend(); ++it) {
        start -= it->duration;
        if (start < total - window - 1e-6) break;
        energy += it->energyTime;
        seconds += it->duration;
    }
    return 10.0 * std::log10(energy / seconds);
}

ExposureProfile customMinutes(double minutes, double limit = 100.0)
{
    return ExposureProfile::custom(minutes, limit);
}

} // namespace

TEST(ExposureMeter, RollingLevelEqualsABruteForceSumOverRandomIntervalEnergies)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> level(60.0, 110.0);
    ExposureMeter meter(customMinutes(1.0));
    std::vector<ExposureSample> samples;
    for (int i = 0; i < 20'000; ++i) {
        samples.push_back(steady(level(random)));
        meter.ingest(samples.back());
        if (i % 997 == 0 || i == 19'999) {
            ASSERT_NEAR(*meter.reading().laeqWindow, bruteForce(samples, 60.0), 0.001)
                << "after " << i + 1 << " intervals";
        }
    }
}

TEST(ExposureMeter, UntilTheWindowHasPassedItCoversTheTimeSoFar)
{
    ExposureMeter meter(customMinutes(1.0));
    for (int i = 0; i < 100; ++i)
        meter.ingest(steady(90.0));
    for (int i = 0; i < 100; ++i)
        meter.ingest(steady(80.0));
    EXPECT_NEAR(meter.reading().windowSeconds, 20.0, 1e-9);
    EXPECT_NEAR(*meter.reading().laeqWindow, 10.0 * std::log10((1e9 + 1e8) / 2.0), 1e-9);
}

TEST(ExposureMeter, AnIntervalLeavesTheWindowExactlyWhenItsStartFallsOutOfIt)
{
    ExposureMeter meter(customMinutes(1.0));
    meter.ingest(steady(100.0));
    for (int i = 0; i < 599; ++i)
        meter.ingest(steady(50.0));
    // Sixty seconds exactly: the loud first tenth is still in.
    EXPECT_NEAR(meter.reading().windowSeconds, 60.0, 1e-9);
    const double withLoud = *meter.reading().laeqWindow;
    EXPECT_NEAR(withLoud,
        10.0 * std::log10((SPLMath::power(100.0) * 0.1 + SPLMath::power(50.0) * 59.9) / 60.0),
        1e-9);
    meter.ingest(steady(50.0));
    EXPECT_NEAR(meter.reading().windowSeconds, 60.0, 1e-9);
    EXPECT_NEAR(*meter.reading().laeqWindow, 50.0, 1e-9);
}

TEST(ExposureMeter, SwitchingProfileMidShowRecomputesFromTheRingWithoutAReset)
{
    ExposureMeter meter(customMinutes(1.0));
    std::vector<ExposureSample> samples;
    for (int i = 0; i < 6000; ++i) {
        samples.push_back(steady(i < 3000 ? 95.0 : 85.0));
        meter.ingest(samples.back());
    }
    EXPECT_NEAR(*meter.reading().laeqWindow, 85.0, 1e-9);
    meter.setProfile(ExposureProfile::builtIn(ExposureProfileKind::who));
    EXPECT_NEAR(meter.reading().windowSeconds, 600.0, 1e-6);
    EXPECT_NEAR(*meter.reading().laeqWindow, bruteForce(samples, 900.0), 0.001);
    EXPECT_NEAR(meter.reading().showSeconds, 600.0, 1e-6);
    meter.ingest(steady(85.0));
    samples.push_back(steady(85.0));
    EXPECT_NEAR(*meter.reading().laeqWindow, bruteForce(samples, 900.0), 0.001);
}

TEST(ExposureMeter, AResetStartsTheWindowThePeaksAndTheSummaryAgain)
{
    ExposureMeter meter;
    for (int i = 0; i < 100; ++i)
        meter.ingest(steady(105.0, 0.1, 130.0));
    EXPECT_GT(meter.secondsOverLimit(), 9.0);
    meter.reset();
    EXPECT_FALSE(meter.reading().laeqWindow);
    EXPECT_FALSE(meter.laeqWindowMax());
    EXPECT_EQ(meter.secondsOverLimit(), 0.0);
    meter.ingest(steady(70.0, 0.1, 90.0));
    EXPECT_NEAR(*meter.reading().laeqWindow, 70.0, 1e-9);
    EXPECT_NEAR(*meter.reading().lcpeakShow, 90.0, 1e-9);
    EXPECT_NEAR(meter.reading().showSeconds, 0.1, 1e-12);
}

TEST(ExposureMeter, ASampleRateChangeWeighsIntervalsByTheirDurationNotTheirSamples)
{
    ExposureMeter meter(customMinutes(1.0));
    // 4800 samples at 48 kHz and 4410 at 44.1 kHz are both a tenth of a second.
    for (int i = 0; i < 300; ++i)
        meter.ingest(steady(90.0, 4800.0 / 48000.0));
    for (int i = 0; i < 300; ++i)
        meter.ingest(steady(80.0, 4410.0 / 44100.0));
    EXPECT_NEAR(*meter.reading().laeqWindow, 10.0 * std::log10((1e9 + 1e8) / 2.0), 1e-6);
    // Intervals of another length are still exact against the time they cover.
    meter.ingest(steady(100.0, 0.25));
    EXPECT_NEAR(meter.reading().windowSeconds, 60.0, 0.25);
}

TEST(ExposureMeter, NonFiniteOrEmptyIntervalsAreDroppedAndTheReadingStaysFinite)
{
    ExposureMeter meter;
    meter.ingest(steady(80.0));
    const ExposureReading before = meter.reading();
    meter.ingest({std::nan(""), 0.1, 1.0});
    meter.ingest({INFINITY, 0.1, 1.0});
    meter.ingest({1.0, 0.0, 1.0});
    meter.ingest({1.0, -0.1, 1.0});
    meter.ingest({1.0, std::nan(""), 1.0});
    EXPECT_EQ(meter.reading(), before);
    meter.ingest({SPLMath::power(80.0) * 0.1, 0.1, std::nan("")});
    EXPECT_TRUE(std::isfinite(*meter.reading().laeqWindow));
    EXPECT_TRUE(std::isfinite(*meter.reading().lcpeakShow));
}

TEST(ExposureMeter, AnHourOfTenthSecondIntervalsAllocatesNothingPerInterval)
{
    ExposureMeter meter(customMinutes(60.0));
    const ExposureSample sample = steady(95.0, 0.1, 120.0);
    testsupport::AllocationCounter counter;
    for (int i = 0; i < 36'000 * 2; ++i)
        meter.ingest(sample);
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_NEAR(meter.reading().windowSeconds, 3600.0, 1e-3);
    EXPECT_NEAR(*meter.reading().laeqWindow, 95.0, 1e-6);
}

TEST(ExposureMeter, RunningSumsDoNotDriftOverAThreeHourShow)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> level(40.0, 120.0);
    ExposureMeter meter(customMinutes(15.0));
    std::vector<ExposureSample> samples;
    samples.reserve(108'000);
    for (int i = 0; i < 108'000; ++i) {
        samples.push_back(steady(level(random)));
        meter.ingest(samples.back());
    }
    EXPECT_NEAR(*meter.reading().laeqWindow, bruteForce(samples, 900.0), 0.001);
}

TEST(ExposureMeter, RoomIsTheLevelThatKeepsTheWindowEndingFiveMinutesFromNowAtTheLimit)
{
    ExposureMeter meter;
    std::vector<ExposureSample> samples;
    std::mt19937 random(3);
    std::uniform_real_distribution<double> level(85.0, 101.0);
    for (int i = 0; i < 7000; ++i) {
        samples.push_back(steady(level(random)));
        meter.ingest(samples.back());
    }
    // Direct: the energy of the last ten minutes, and what the next five may add.
    double energy = 0.0;
    for (std::size_t k = samples.size() - 6000; k < samples.size(); ++k)
        energy += samples[k].energyTime;
    const double expected = 10.0 * std::log10((900.0 * SPLMath::power(100.0) - energy) / 300.0);
    ASSERT_TRUE(meter.reading().room);
    EXPECT_NEAR(*meter.reading().room, expected, 0.001);
    EXPECT_EQ(meter.reading().roomSeconds, 300.0);
    // Playing exactly that for five minutes lands the window on the limit.
    const double room = *meter.reading().room;
    for (int i = 0; i < 3000; ++i)
        meter.ingest(steady(room));
    EXPECT_NEAR(*meter.reading().laeqWindow, 100.0, 0.001);
}

TEST(ExposureMeter, RoomCountsTheTimeBeforeTheStartAsSilence)
{
    ExposureMeter meter;
    meter.ingest(steady(100.0, 60.0));
    const double expected
        = 10.0 * std::log10((900.0 * SPLMath::power(100.0) - 60.0 * SPLMath::power(100.0)) / 300.0);
    EXPECT_NEAR(*meter.reading().room, expected, 1e-9);
}

TEST(ExposureMeter, AWindowTooLoudToRecoverSaysTheLimitIsOutOfReach)
{
    ExposureMeter meter;
    for (int i = 0; i < 6000; ++i)
        meter.ingest(steady(104.0));
    EXPECT_FALSE(meter.reading().room);
    EXPECT_EQ(meter.reading().step, ExposureStep::overLimit);
}

TEST(ExposureMeter, ShortWindowsGiveRoomForTheWholeWindow)
{
    ExposureMeter meter(customMinutes(2.0));
    meter.ingest(steady(90.0));
    EXPECT_EQ(meter.reading().roomSeconds, 120.0);
    EXPECT_NEAR(*meter.reading().room, 100.0, 1e-9);
}

TEST(ExposureMeter, StepsAreWithinTheLimitWithinTheMarginAndOver)
{
    ExposureMeter meter;
    meter.ingest(steady(96.9));
    EXPECT_EQ(meter.reading().step, ExposureStep::withinLimit);
    meter.reset();
    meter.ingest(steady(97.5));
    EXPECT_EQ(meter.reading().step, ExposureStep::withinMargin);
    meter.reset();
    meter.ingest(steady(100.5));
    EXPECT_EQ(meter.reading().step, ExposureStep::overLimit);
}

TEST(ExposureMeter, ThePeakOfTheWindowFollowsTheWindowAndTheShowsPeakStays)
{
    ExposureMeter meter(customMinutes(1.0));
    meter.ingest(steady(80.0, 0.1, 130.0));
    for (int i = 0; i < 599; ++i)
        meter.ingest(steady(80.0, 0.1, 100.0 + (i % 7)));
    EXPECT_NEAR(*meter.reading().lcpeakWindow, 130.0, 1e-9);
    meter.ingest(steady(80.0, 0.1, 101.0));
    EXPECT_NEAR(*meter.reading().lcpeakWindow, 106.0, 1e-9);
    EXPECT_NEAR(*meter.reading().lcpeakShow, 130.0, 1e-9);
    EXPECT_NEAR(*meter.reading().lcpeak, 101.0, 1e-9);
}

TEST(ExposureMeter, TheShowsLevelAndDoseFollowTheWholeShow)
{
    ExposureMeter meter;
    // An hour at 94 dB(A): 9 dB over 85 for an eighth of the day is 8 x 1/8 = ~99.3 %.
    for (int i = 0; i < 36'000; ++i)
        meter.ingest(steady(94.0));
    EXPECT_NEAR(*meter.reading().laeqShow, 94.0, 1e-6);
    EXPECT_NEAR(meter.reading().dosePercent, 100.0 * (1.0 / 8.0) * std::pow(10.0, 0.9), 1e-6);
}

TEST(ExposureMeter, TheDailyExposureIsTheShowOverEightHoursWithRoomForTheNextFiveMinutes)
{
    ExposureMeter meter(ExposureProfile::builtIn(ExposureProfileKind::uk));
    for (int i = 0; i < 36'000; ++i)
        meter.ingest(steady(91.0));
    // LAeq,t + 10 log10(t / 8 h)
    EXPECT_NEAR(*meter.reading().laeqWindow, 91.0 + 10.0 * std::log10(1.0 / 8.0), 1e-6);
    const double energy = 3600.0 * SPLMath::power(91.0);
    EXPECT_NEAR(*meter.reading().room,
        10.0 * std::log10((8.0 * 3600.0 * SPLMath::power(85.0) - energy) / 300.0), 1e-6);
    EXPECT_NEAR(meter.reading().windowSeconds, 3600.0, 1e-6);
}

TEST(ExposureMeter, TheSummaryKeepsTheHighestWindowWhenItEndedAndTheTimeOverTheLimit)
{
    ExposureMeter meter(customMinutes(1.0));
    for (int i = 0; i < 600; ++i)
        meter.ingest(steady(90.0));
    for (int i = 0; i < 300; ++i)
        meter.ingest(steady(110.0));
    for (int i = 0; i < 1200; ++i)
        meter.ingest(steady(80.0));
    ASSERT_TRUE(meter.laeqWindowMax());
    // The window from 30 to 90 seconds: the last half minute at 90 and the whole loud one.
    EXPECT_NEAR(meter.laeqWindowMaxAt(), 90.0, 0.05);
    EXPECT_NEAR(*meter.laeqWindowMax(),
        10.0 * std::log10((SPLMath::power(110.0) * 30 + SPLMath::power(90.0) * 30) / 60.0), 1e-6);
    // Over the limit from the first loud seconds until the loud half minute has mostly left.
    EXPECT_GT(meter.secondsOverLimit(), 30.0);
    EXPECT_LT(meter.secondsOverLimit(), 90.0);
}
