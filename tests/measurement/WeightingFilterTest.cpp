#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

#include "measurement/SPLMath.h"
#include "measurement/WeightingFilter.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

constexpr double rates[] = {8000.0, 22050.0, 32000.0, 44100.0, 48000.0, 96000.0, 192000.0};

double meanSquareThrough(
    WeightingFilter& filter, const std::vector<float>& samples, std::size_t skip)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double y = filter.process(static_cast<double>(samples[i]));
        if (i >= skip) sum += y * y;
    }
    return sum / static_cast<double>(samples.size() - skip);
}

struct Tolerance {
    double frequency;
    double upper;
    double lower; // infinity: no lower limit
};

// Class 1 acceptance limits of IEC 61672-1:2013, Table 3.
constexpr double none = std::numeric_limits<double>::infinity();
constexpr Tolerance classOneLimits[] = {
    {10, 3.5, none},
    {12.5, 3.0, none},
    {16, 2.5, 4.5},
    {20, 2.5, 2.5},
    {25, 2.5, 2.0},
    {31.5, 2.0, 2.0},
    {40, 1.5, 1.5},
    {50, 1.5, 1.5},
    {63, 1.5, 1.5},
    {80, 1.5, 1.5},
    {100, 1.5, 1.5},
    {125, 1.5, 1.5},
    {160, 1.5, 1.5},
    {200, 1.4, 1.4},
    {250, 1.4, 1.4},
    {315, 1.4, 1.4},
    {400, 1.4, 1.4},
    {500, 1.4, 1.4},
    {630, 1.4, 1.4},
    {800, 1.4, 1.4},
    {1000, 1.1, 1.1},
    {1250, 1.4, 1.4},
    {1600, 1.6, 1.6},
    {2000, 1.6, 1.6},
    {2500, 1.6, 1.6},
    {3150, 1.6, 1.6},
    {4000, 1.6, 1.6},
    {5000, 2.1, 2.1},
    {6300, 2.1, 2.6},
    {8000, 2.1, 3.1},
    {10000, 2.6, 3.6},
    {12500, 3.0, 6.0},
    {16000, 3.5, 17.0},
    {20000, 4.0, none},
};

double reference(FrequencyWeighting weighting, double frequency)
{
    return weighting == FrequencyWeighting::a ? SPLMath::referenceAWeighting(frequency)
                                              : SPLMath::referenceCWeighting(frequency);
}

double warpedAnalogue(FrequencyWeighting weighting, double frequency, double rate)
{
    const auto warp
        = [rate](double f) { return 2.0 * rate * std::tan(3.141592653589793 * f / rate); };
    const double w1 = warp(20.598997), w2 = warp(107.65265), w3 = warp(737.86223);
    const double w4 = warp(WeightingFilter::upperCorner(rate));
    const auto magnitude = [&](double f) {
        const double w = warp(f), ww = w * w;
        double value = (ww / (ww + w1 * w1)) * (w4 * w4 / (ww + w4 * w4));
        if (weighting == FrequencyWeighting::a)
            value *= ww / std::sqrt((ww + w2 * w2) * (ww + w3 * w3));
        return value;
    };
    return 20.0 * std::log10(magnitude(frequency) / magnitude(1000.0));
}

// Largest |digital - analogue| over a dense logarithmic grid from 10 Hz to `top`.
double largestDeviation(const WeightingFilter& filter, double top, double* where)
{
    double worst = 0.0;
    for (int i = 0; i <= 2000; ++i) {
        const double f = 10.0 * std::pow(top / 10.0, i / 2000.0);
        const double deviation = std::fabs(filter.response(f) - reference(filter.weighting(), f));
        if (deviation > worst) {
            worst = deviation;
            *where = f;
        }
    }
    return worst;
}

} // namespace

TEST(WeightingFilter, OneKilohertzSineKeepsItsMeanSquareThroughEveryWeightingAtEveryRate)
{
    for (double rate : rates) {
        const auto samples = testsignals::sine(1000.0, 0.5, rate, static_cast<std::size_t>(rate));
        const double input = SPLMath::meanSquare(samples);
        for (auto weighting : allFrequencyWeightings) {
            WeightingFilter filter(weighting, rate);
            const double output = meanSquareThrough(filter, samples, samples.size() / 2);
            EXPECT_NEAR(SPLMath::decibels(output), SPLMath::decibels(input), 0.01)
                << rawValue(weighting) << " at " << rate;
        }
    }
}

TEST(WeightingFilter, ZPassesSamplesBitForBitAndKeepsNoState)
{
    WeightingFilter filter(FrequencyWeighting::z, 48000.0);
    const auto samples = testsignals::noise(1.0, 4096);
    for (float sample : samples) {
        const double widened = sample;
        const double out = filter.process(widened);
        EXPECT_EQ(std::memcmp(&out, &widened, sizeof(double)), 0);
    }
    for (const Biquad* section : {&filter.highPass(), &filter.mid(), &filter.lowPass()}) {
        EXPECT_TRUE(section->isIdentity());
        EXPECT_EQ(section->z1, 0.0);
        EXPECT_EQ(section->z2, 0.0);
    }
    EXPECT_EQ(filter.gain(), 1.0);
}

TEST(WeightingFilter, CKeepsAnIdentityMidSectionInTheChain)
{
    WeightingFilter filter(FrequencyWeighting::c, 48000.0);
    EXPECT_TRUE(filter.mid().isIdentity());
    EXPECT_FALSE(filter.highPass().isIdentity());
    EXPECT_FALSE(filter.lowPass().isIdentity());
    for (float sample : testsignals::noise(0.5, 1000))
        filter.process(sample);
    // The identity section passes its input through: its state words stay zero.
    EXPECT_EQ(filter.mid().z1, 0.0);
    EXPECT_EQ(filter.mid().z2, 0.0);
    EXPECT_NE(filter.highPass().z1, 0.0);
}

TEST(WeightingFilter, TracksTheStandardCurveWithinClassOneLimitsAt44and48and96kHz)
{
    for (double rate : {44100.0, 48000.0, 96000.0}) {
        for (auto weighting : {FrequencyWeighting::a, FrequencyWeighting::c}) {
            const WeightingFilter filter(weighting, rate);
            for (const auto& limit : classOneLimits) {
                const double deviation
                    = filter.response(limit.frequency) - reference(weighting, limit.frequency);
                EXPECT_LE(deviation, limit.upper)
                    << rawValue(weighting) << " " << rate << " Hz at " << limit.frequency;
                EXPECT_GE(deviation, -limit.lower)
                    << rawValue(weighting) << " " << rate << " Hz at " << limit.frequency;
            }
        }
    }
}

TEST(WeightingFilter, DigitalResponseIsTheAnalogueDesignWithPrewarpedPolesOnAWarpedAxis)
{
    // The bilinear transform maps digital f to analogue 2 fs tan(pi f / fs); with every pole
    // prewarped the digital filter is exactly the analogue curve read on that axis. This is the
    // whole of its departure from the standard curve, growing towards Nyquist.
    for (double rate : {22050.0, 44100.0, 48000.0, 96000.0}) {
        for (auto weighting : {FrequencyWeighting::a, FrequencyWeighting::c}) {
            const WeightingFilter filter(weighting, rate);
            for (int i = 0; i <= 400; ++i) {
                const double f = 10.0 * std::pow(0.45 * rate / 10.0, i / 400.0);
                EXPECT_NEAR(filter.response(f), warpedAnalogue(weighting, f, rate), 1e-6)
                    << rawValue(weighting) << " " << rate << " at " << f;
            }
        }
    }
}

TEST(WeightingFilter, ReportsTheLargestDeviationFromTheStandardCurvePerRate)
{
    for (double rate : {44100.0, 48000.0, 96000.0}) {
        for (auto weighting : {FrequencyWeighting::a, FrequencyWeighting::c}) {
            const WeightingFilter filter(weighting, rate);
            double where = 0.0, where1k = 0.0;
            const double all = largestDeviation(filter, 20000.0, &where);
            const double below1k = largestDeviation(filter, 1000.0, &where1k);
            const double below10k = largestDeviation(filter, 10000.0, &where1k);
            // Up to 1 kHz the warping is negligible at these rates.
            EXPECT_LT(below1k, 0.05) << rawValue(weighting) << " " << rate;
            std::printf("[ deviation ] %s at %.0f Hz: largest %.3f dB at %.0f Hz; up to 10 kHz "
                        "%.3f dB; up to 1 kHz %.4f dB\n",
                std::string(rawValue(weighting)).c_str(), rate, all, where, below10k, below1k);
        }
    }
}

TEST(WeightingFilter, TopCornerIsCappedAtFortyFivePercentOfTheRateAtLowRates)
{
    EXPECT_DOUBLE_EQ(WeightingFilter::upperCorner(22050.0), 9922.5);
    EXPECT_DOUBLE_EQ(WeightingFilter::upperCorner(8000.0), 3600.0);
    EXPECT_DOUBLE_EQ(WeightingFilter::upperCorner(48000.0), 12194.217);
    EXPECT_DOUBLE_EQ(WeightingFilter::upperCorner(27098.26), 12194.217);
    // The capped filter is still a stable, normalised design.
    const WeightingFilter filter(FrequencyWeighting::a, 22050.0);
    EXPECT_NEAR(filter.response(1000.0), 0.0, 1e-9);
    EXPECT_LT(filter.response(9000.0), filter.response(3000.0));
}

TEST(WeightingFilter, FiltersForTheSameWeightingAtDifferentRatesAreEachUnityAtOneKilohertz)
{
    for (auto weighting : allFrequencyWeightings) {
        const WeightingFilter at44(weighting, 44100.0);
        const WeightingFilter at96(weighting, 96000.0);
        if (weighting != FrequencyWeighting::z) {
            EXPECT_NE(at44.gain(), at96.gain());
        }
        EXPECT_NEAR(at44.gain() * at44.unnormalisedMagnitude(1000.0), 1.0, 1e-12);
        EXPECT_NEAR(at96.gain() * at96.unnormalisedMagnitude(1000.0), 1.0, 1e-12);
        EXPECT_NEAR(at44.response(1000.0), 0.0, 1e-10);
        EXPECT_NEAR(at96.response(1000.0), 0.0, 1e-10);
    }
}

TEST(WeightingFilter, ResetClearsTheSections)
{
    WeightingFilter filter(FrequencyWeighting::a, 48000.0);
    for (float sample : testsignals::noise(0.5, 100))
        filter.process(sample);
    filter.reset();
    EXPECT_EQ(filter.highPass().z1, 0.0);
    EXPECT_EQ(filter.lowPass().z2, 0.0);
}

TEST(Biquad, ProcessIsTransposedDirectFormTwo)
{
    Biquad section;
    section.b0 = 0.5;
    section.b1 = 0.25;
    section.b2 = 0.125;
    section.a1 = -0.5;
    section.a2 = 0.25;
    // y0 = 0.5; z1 = 0.25 + 0.25 = 0.5; z2 = 0.125 - 0.125 = 0
    EXPECT_DOUBLE_EQ(section.process(1.0), 0.5);
    EXPECT_DOUBLE_EQ(section.z1, 0.5);
    EXPECT_DOUBLE_EQ(section.z2, 0.0);
    // y1 = 0.5; z1 = 0 + 0.25 + 0 = 0.25; z2 = 0 - 0.125
    EXPECT_DOUBLE_EQ(section.process(0.0), 0.5);
    EXPECT_DOUBLE_EQ(section.z1, 0.25);
    EXPECT_DOUBLE_EQ(section.z2, -0.125);
}

TEST(Biquad, IdentityHasUnitMagnitudeEverywhere)
{
    const Biquad identity = Biquad::identity();
    for (double f : {10.0, 1000.0, 20000.0})
        EXPECT_DOUBLE_EQ(identity.magnitude(f, 48000.0), 1.0);
}

TEST(Biquad, BilinearOfADoublePoleLowPassHasUnitGainAtDcAndNoneAtNyquist)
{
    const double w = 2.0 * 48000.0 * std::tan(3.141592653589793 * 1000.0 / 48000.0);
    const Biquad section = Biquad::bilinear({0.0, 0.0, w * w}, {1.0, 2.0 * w, w * w}, 48000.0);
    EXPECT_NEAR(section.magnitude(0.0, 48000.0), 1.0, 1e-12);
    EXPECT_NEAR(section.magnitude(24000.0, 48000.0), 0.0, 1e-9);
    // Prewarped: the analogue -6 dB point of a double pole lands exactly at the corner.
    EXPECT_NEAR(20.0 * std::log10(section.magnitude(1000.0, 48000.0)), -6.0206, 1e-3);
}
