#include "measurement/Biquad.h"

#include <cmath>
#include <numbers>

namespace ostrel {

Biquad Biquad::bilinear(const double (&n)[3], const double (&d)[3], double sampleRate) noexcept
{
    const double k = 2.0 * sampleRate;
    const double k2 = k * k;
    const double a0 = d[0] * k2 + d[1] * k + d[2];
    Biquad section;
    section.b0 = (n[0] * k2 + n[1] * k + n[2]) / a0;
    section.b1 = 2.0 * (n[2] - n[0] * k2) / a0;
    section.b2 = (n[0] * k2 - n[1] * k + n[2]) / a0;
    section.a1 = 2.0 * (d[2] - d[0] * k2) / a0;
    section.a2 = (d[0] * k2 - d[1] * k + d[2]) / a0;
    return section;
}

double Biquad::magnitude(double frequency, double sampleRate) const noexcept
{
    const double w = 2.0 * std::numbers::pi * frequency / sampleRate;
    const double c1 = std::cos(w), s1 = std::sin(w);
    const double c2 = std::cos(2.0 * w), s2 = std::sin(2.0 * w);
    const double numRe = b0 + b1 * c1 + b2 * c2;
    const double numIm = b1 * s1 + b2 * s2;
    const double denRe = 1.0 + a1 * c1 + a2 * c2;
    const double denIm = a1 * s1 + a2 * s2;
    return std::sqrt((numRe * numRe + numIm * numIm) / (denRe * denRe + denIm * denIm));
}

} // namespace ostrel
