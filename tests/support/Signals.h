#pragma once

// Test signals, generated in the tests so that nothing depends on files outside the repository.
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace ostrel::testsignals {

inline std::vector<float> sine(
    double frequency, double amplitude, double sampleRate, std::size_t count, double phase = 0.0)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<float>(amplitude
            * std::sin(
                2.0 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate + phase));
    }
    return samples;
}

// Deterministic white noise in -amplitude...amplitude.
inline std::vector<float> noise(double amplitude, std::size_t count, std::uint32_t seed = 1)
{
    std::vector<float> samples(count);
    std::uint32_t state = seed;
    for (auto& sample : samples) {
        state = state * 1664525u + 1013904223u;
        sample = static_cast<float>(amplitude * (2.0 * (state >> 8) / 16777216.0 - 1.0));
    }
    return samples;
}

} // namespace ostrel::testsignals
