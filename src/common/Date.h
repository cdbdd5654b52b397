#pragma once

// The one date type of the system: a point in time with sub-second precision. Logic takes
// dates as arguments and never reads the clock itself.
#include <chrono>

namespace ostrel {

using Date = std::chrono::system_clock::time_point;

// "Never": far enough back for any throttle to pass, near enough that differences in
// nanoseconds cannot overflow.
inline constexpr Date distantPast = Date {} - std::chrono::hours(24 * 365 * 100);

// Seconds from `from` to `to`, as the rest of the system counts durations.
inline double secondsBetween(Date from, Date to)
{
    return std::chrono::duration<double>(to - from).count();
}

inline Date addingSeconds(Date date, double seconds)
{
    return date
        + std::chrono::duration_cast<Date::duration>(std::chrono::duration<double>(seconds));
}

} // namespace ostrel
