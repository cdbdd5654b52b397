#pragma once

// A, C or Z weighting as a cascade of three biquads designed at the input's own sample rate
// from the IEC 61672-1 pole frequencies, prewarped, and normalised to exactly 0 dB at 1 kHz.
#include "measurement/Biquad.h"
#include "measurement/FrequencyWeighting.h"

namespace ostrel {

class WeightingFilter {
public:
    WeightingFilter(FrequencyWeighting weighting, double sampleRate) noexcept;

    FrequencyWeighting weighting() const noexcept { return weighting_; }
    double sampleRate() const noexcept { return sampleRate_; }
    const Biquad& highPass() const noexcept { return highPass_; }
    const Biquad& mid() const noexcept { return mid_; }
    const Biquad& lowPass() const noexcept { return lowPass_; }
    double gain() const noexcept { return gain_; }

    // The upper corner, capped at 45 % of the sample rate.
    static double upperCorner(double sampleRate) noexcept;

    double process(double x) noexcept
    {
        if (weighting_ == FrequencyWeighting::z) return x;
        return gain_ * lowPass_.process(mid_.process(highPass_.process(x)));
    }

    void reset() noexcept;
    // Writes back the sections' state after a block run outside the filter.
    void setState(const Biquad& highPass, const Biquad& mid, const Biquad& lowPass) noexcept
    {
        highPass_ = highPass;
        mid_ = mid;
        lowPass_ = lowPass;
    }
    double unnormalisedMagnitude(double frequency) const noexcept;
    // The cascade with its gain, in dB; 0 at 1 kHz for every weighting and rate.
    double response(double frequency) const noexcept;

private:
    FrequencyWeighting weighting_;
    double sampleRate_;
    Biquad highPass_;
    Biquad mid_;
    Biquad lowPass_;
    double gain_ = 1.0;
};

} // namespace ostrel
