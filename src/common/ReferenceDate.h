#pragma once

// Dates as the crew and its mirrored cues carry them in JSON: seconds since 00:00:00 UTC on
// 1 January 2001, as a 64-bit float.
#include <chrono>
#include <cmath>
#include <optional>

#include "common/Date.h"

namespace ostrel::ReferenceDate {

inline constexpr double unixOffset = 978'307'200.0; // 2001-01-01 in seconds since 1970

inline double seconds(Date date)
{
    return secondsBetween(Date {}, date) - unixOffset;
}

// Nothing for a value that is not finite or lies outside what `Date` can hold (about 292 years
// either side of 1970 with nanosecond ticks), which a peer can send but no clock can mean.
inline std::optional<Date> date(double seconds)
{
    const double sinceUnix = seconds + unixOffset;
    const double limit = std::chrono::duration<double>(Date::duration::max()).count() * 0.99;
    if (!std::isfinite(sinceUnix) || std::abs(sinceUnix) > limit) return std::nullopt;
    return addingSeconds(Date {}, sinceUnix);
}

} // namespace ostrel::ReferenceDate
