#pragma once

// Repeatable test signals, so that the demo plays its show through the true measuring path.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrel {

class SignalGenerator {
public:
    // The seed the demo uses.
    static constexpr std::uint64_t demoSeed = 0x9E3779B97F4A7C15ULL;

    SignalGenerator(double sampleRate, std::uint64_t seed);

    double sampleRate() const { return sampleRate_; }

    // Blocks join without a click: the phase runs on from one call to the next.
    std::vector<float> sine(double frequency, double amplitude, double duration);
    // Uniform white noise of the given RMS, from an xorshift64* generator.
    std::vector<float> whiteNoise(double rms, double duration);
    std::vector<float> silence(double duration) const;

    // The peak amplitude of a sine that reads `dbfs`: levels are power levels, so a sine's
    // amplitude is the square root of twice its mean square.
    static double sineAmplitude(double dbfs);

private:
    // Truncated duration x rate; a negative or non-finite product is a programming error.
    std::size_t length(double duration) const;

    double sampleRate_;
    double phase_ = 0.0;
    std::uint64_t noiseState_;
};

} // namespace ostrel
