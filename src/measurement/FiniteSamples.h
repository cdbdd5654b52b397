#pragma once

// A broken driver or a damaged file can deliver NaN or infinity. A recursive filter or detector
// would keep such a value for good, so it enters every stage as silence instead.
#include <cmath>
#include <cstddef>
#include <span>

namespace ostrel::FiniteSamples {

inline bool isFinite(double sample) noexcept
{
    return std::isfinite(sample);
}

// Copies `from` to `to`, which has room for all of it, with silence for each sample that is not
// finite; returns how many those were.
inline std::size_t copy(std::span<const float> from, float* to) noexcept
{
    std::size_t replaced = 0;
    for (std::size_t i = 0; i < from.size(); ++i) {
        const float sample = from[i];
        const bool finite = std::isfinite(sample);
        to[i] = finite ? sample : 0.0f;
        replaced += finite ? 0 : 1;
    }
    return replaced;
}

} // namespace ostrel::FiniteSamples
