#pragma once

// The smallest arithmetic of the meter. Levels are power levels: a constant sample of 1.0 reads
// 0 dB, a full-scale sine about -3.01 dB. Every level goes through `decibels`, so the floor of
// -200 dB holds everywhere.
#include <optional>
#include <span>

namespace ostrel::SPLMath {

inline constexpr double powerFloor = 1e-20;
inline constexpr double floorDecibels = -200.0;

double decibels(double power) noexcept;
// 20 log10 of an amplitude; -200 for zero or less, like the power form.
double decibelsOfAmplitude(double amplitude) noexcept;
double power(double decibels) noexcept;
double soundPressureLevel(double dBFS, double calibrationOffset) noexcept;
double calibrationOffset(double referenceLevel, double measuredDBFS) noexcept;
double timeWeightingCoefficient(double timeConstant, double sampleRate) noexcept;
// 0 for an empty span.
double meanSquare(std::span<const float> samples) noexcept;
double rms(std::span<const float> samples) noexcept;
std::optional<double> energyAverage(std::span<const double> levels) noexcept;

// Analogue IEC 61672-1 weightings in dB, 0 dB at 1 kHz: the yardstick for the digital filters.
double referenceAWeighting(double frequency) noexcept;
double referenceCWeighting(double frequency) noexcept;

} // namespace ostrel::SPLMath
