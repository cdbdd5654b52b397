#pragma once

// A double made a float, rounding to nearest as a hardware conversion does, for the file and
// wire formats that store floats.
#include <cmath>
#include <limits>

namespace ostrel {

// Spelled out because converting a double beyond the float range is undefined in C++: values
// past halfway beyond the largest float become infinity, the rest round.
inline float narrowedToFloat(double value)
{
    constexpr double largest = std::numeric_limits<float>::max();
    constexpr double roundsToInfinity = 0x1p128 - 0x1p103; // halfway past the largest float
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (std::abs(value) >= roundsToInfinity) return value > 0 ? infinity : -infinity;
    if (std::abs(value) > largest) return static_cast<float>(value > 0 ? largest : -largest);
    return static_cast<float>(value);
}

} // namespace ostrel
