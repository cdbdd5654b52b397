#pragma once

// Frame rates of QLab's Timecode cues; the raw value is QLab's own frame-rate index.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class TimecodeRate {
    fps24 = 0,
    fps25 = 1,
    fps30 = 2,
    fps30Drop = 3,
    fps23976 = 4,
    fps24975 = 5,
    fps2997 = 6,
    fps2997Drop = 7,
};

namespace TimecodeRates {

inline constexpr std::array<TimecodeRate, 8> all {TimecodeRate::fps24, TimecodeRate::fps25,
    TimecodeRate::fps30, TimecodeRate::fps30Drop, TimecodeRate::fps23976, TimecodeRate::fps24975,
    TimecodeRate::fps2997, TimecodeRate::fps2997Drop};

int rawValue(TimecodeRate rate) noexcept;
// Nothing outside 0 to 7.
std::optional<TimecodeRate> fromRawValue(long long raw) noexcept;
int nominalFPS(TimecodeRate rate) noexcept;
double actualFPS(TimecodeRate rate) noexcept;
bool isDropFrame(TimecodeRate rate) noexcept;
std::string_view title(TimecodeRate rate) noexcept;

} // namespace TimecodeRates
} // namespace ostrel
