#pragma once

// One second-order section in transposed direct form II, 64-bit throughout.
namespace ostrel {

struct Biquad {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
    double z1 = 0.0;
    double z2 = 0.0;

    static Biquad identity() noexcept { return {}; }

    // Analogue n0 s^2 + n1 s + n2 over d0 s^2 + d1 s + d2, bilinear transform with K = 2 fs.
    static Biquad bilinear(
        const double (&numerator)[3], const double (&denominator)[3], double sampleRate) noexcept;

    double process(double x) noexcept
    {
        const double y = b0 * x + z1;
        z1 = b1 * x - a1 * y + z2;
        z2 = b2 * x - a2 * y;
        return y;
    }

    void reset() noexcept { z1 = z2 = 0.0; }

    // Linear magnitude of the section at a frequency.
    double magnitude(double frequency, double sampleRate) const noexcept;

    bool isIdentity() const noexcept
    {
        return b0 == 1.0 && b1 == 0.0 && b2 == 0.0 && a1 == 0.0 && a2 == 0.0;
    }
};

} // namespace ostrel
