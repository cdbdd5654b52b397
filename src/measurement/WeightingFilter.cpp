#include "measurement/WeightingFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "measurement/SPLMath.h"

namespace ostrel {

namespace {

constexpr double f1 = 20.598997;
constexpr double f2 = 107.65265;
constexpr double f3 = 737.86223;
constexpr double f4 = 12194.217;

double prewarped(double frequency, double sampleRate)
{
    return 2.0 * sampleRate * std::tan(std::numbers::pi * frequency / sampleRate);
}

} // namespace

double WeightingFilter::upperCorner(double sampleRate) noexcept
{
    return std::min(0.45 * sampleRate, f4);
}

WeightingFilter::WeightingFilter(FrequencyWeighting weighting, double sampleRate) noexcept
    : weighting_(weighting), sampleRate_(sampleRate)
{
    if (weighting == FrequencyWeighting::z) return;

    const double w1 = prewarped(f1, sampleRate);
    const double w4 = prewarped(upperCorner(sampleRate), sampleRate);
    highPass_ = Biquad::bilinear({1.0, 0.0, 0.0}, {1.0, 2.0 * w1, w1 * w1}, sampleRate);
    lowPass_ = Biquad::bilinear({0.0, 0.0, w4 * w4}, {1.0, 2.0 * w4, w4 * w4}, sampleRate);
    if (weighting == FrequencyWeighting::a) {
        const double w2 = prewarped(f2, sampleRate);
        const double w3 = prewarped(f3, sampleRate);
        mid_ = Biquad::bilinear({1.0, 0.0, 0.0}, {1.0, w2 + w3, w2 * w3}, sampleRate);
    }
    gain_ = 1.0 / unnormalisedMagnitude(1000.0);
}

void WeightingFilter::reset() noexcept
{
    highPass_.reset();
    mid_.reset();
    lowPass_.reset();
}

double WeightingFilter::unnormalisedMagnitude(double frequency) const noexcept
{
    return highPass_.magnitude(frequency, sampleRate_) * mid_.magnitude(frequency, sampleRate_)
        * lowPass_.magnitude(frequency, sampleRate_);
}

double WeightingFilter::response(double frequency) const noexcept
{
    return SPLMath::decibelsOfAmplitude(gain_ * unnormalisedMagnitude(frequency));
}

} // namespace ostrel
