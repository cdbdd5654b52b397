#include "measurement/SPLMath.h"

#include <algorithm>
#include <cmath>

namespace ostrel::SPLMath {

namespace {

// Pole frequencies of IEC 61672-1 Annex E.
constexpr double f1 = 20.598997;
constexpr double f2 = 107.65265;
constexpr double f3 = 737.86223;
constexpr double f4 = 12194.217;

double aResponse(double f)
{
    const double f2sq = f * f;
    return (f4 * f4 * f2sq * f2sq)
        / ((f2sq + f1 * f1) * std::sqrt((f2sq + f2 * f2) * (f2sq + f3 * f3)) * (f2sq + f4 * f4));
}

double cResponse(double f)
{
    const double f2sq = f * f;
    return (f4 * f4 * f2sq) / ((f2sq + f1 * f1) * (f2sq + f4 * f4));
}

} // namespace

double decibels(double power) noexcept
{
    // NaN compares false and lands on the floor too.
    return 10.0 * std::log10(power > powerFloor ? power : powerFloor);
}

double decibelsOfAmplitude(double amplitude) noexcept
{
    return decibels(amplitude > 0.0 ? amplitude * amplitude : 0.0);
}

double power(double decibels) noexcept
{
    return std::pow(10.0, decibels / 10.0);
}

double soundPressureLevel(double dBFS, double calibrationOffset) noexcept
{
    return dBFS + calibrationOffset;
}

double calibrationOffset(double referenceLevel, double measuredDBFS) noexcept
{
    return referenceLevel - measuredDBFS;
}

double timeWeightingCoefficient(double timeConstant, double sampleRate) noexcept
{
    return 1.0 - std::exp(-1.0 / (timeConstant * sampleRate));
}

double meanSquare(std::span<const float> samples) noexcept
{
    if (samples.empty()) return 0.0;
    double sum = 0.0;
    for (float sample : samples) {
        const double x = sample;
        sum += x * x;
    }
    return sum / static_cast<double>(samples.size());
}

double rms(std::span<const float> samples) noexcept
{
    return std::sqrt(meanSquare(samples));
}

std::optional<double> energyAverage(std::span<const double> levels) noexcept
{
    if (levels.empty()) return std::nullopt;
    double sum = 0.0;
    for (double level : levels)
        sum += power(level);
    return decibels(sum / static_cast<double>(levels.size()));
}

double referenceAWeighting(double frequency) noexcept
{
    return 20.0 * std::log10(aResponse(frequency) / aResponse(1000.0));
}

double referenceCWeighting(double frequency) noexcept
{
    return 20.0 * std::log10(cResponse(frequency) / cResponse(1000.0));
}

} // namespace ostrel::SPLMath
