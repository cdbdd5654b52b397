#include "measurement/SignalGenerator.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace ostrel {

SignalGenerator::SignalGenerator(double sampleRate, std::uint64_t seed)
    : sampleRate_(sampleRate), noiseState_(seed)
{
}

std::size_t SignalGenerator::length(double duration) const
{
    const double count = std::trunc(duration * sampleRate_);
    if (!std::isfinite(count) || count < 0.0) {
        std::fprintf(stderr, "SignalGenerator: a duration of %g s at %g Hz has no length\n",
            duration, sampleRate_);
        std::abort();
    }
    return static_cast<std::size_t>(count);
}

std::vector<float> SignalGenerator::sine(double frequency, double amplitude, double duration)
{
    constexpr double twoPi = 2.0 * std::numbers::pi;
    const double increment = twoPi * frequency / sampleRate_;
    std::vector<float> samples(length(duration));
    for (float& sample : samples) {
        sample = static_cast<float>(amplitude * std::sin(phase_));
        phase_ += increment;
        if (phase_ > twoPi) phase_ -= twoPi;
    }
    return samples;
}

std::vector<float> SignalGenerator::whiteNoise(double rms, double duration)
{
    constexpr double sqrtThree = 1.7320508075688772;
    std::vector<float> samples(length(duration));
    for (float& sample : samples) {
        std::uint64_t x = noiseState_;
        x ^= x >> 12;
        x ^= x << 25;
        x ^= x >> 27;
        noiseState_ = x;
        const std::uint64_t scrambled = x * 2685821657736338717ULL;
        const double r = static_cast<double>(scrambled >> 11) * 0x1.0p-53;
        sample = static_cast<float>(rms * sqrtThree * (2.0 * r - 1.0));
    }
    return samples;
}

std::vector<float> SignalGenerator::silence(double duration) const
{
    return std::vector<float>(length(duration), 0.0F);
}

double SignalGenerator::sineAmplitude(double dbfs)
{
    return std::numbers::sqrt2 * std::pow(10.0, dbfs / 20.0);
}

} // namespace ostrel
