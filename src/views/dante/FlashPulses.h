#pragma once

// The red pulse of the dropout flash as opacity over time: three sharp one-second pulses, or
// with reduced motion one long soft one. Each pulse rises to 0.6 easing out, holds, falls to 0
// easing in, and rests.
namespace ostrel::FlashPulses {

inline constexpr double peakOpacity = 0.6;

int count(bool reducedMotion);
// Seconds from the start of a flash to its end: 3.0, or 2.5 with reduced motion.
double duration(bool reducedMotion);
// 0 before the start and after the end.
double opacityAt(double elapsed, bool reducedMotion);

} // namespace ostrel::FlashPulses
