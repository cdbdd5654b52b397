#pragma once

// Numbers as ostrel-analyze prints them: a "." whatever the locale, so that the output of two
// runs or two machines can be compared byte for byte.
#include <string>

namespace ostrel::analyze {

inline constexpr int timeDecimals = 3; // seconds of audio
inline constexpr int levelDecimals = 2; // dB
inline constexpr int frequencyDecimals = 1; // Hz

// `decimals` digits after the point; never "-0.00".
std::string formatFixed(double value, int decimals);

} // namespace ostrel::analyze
