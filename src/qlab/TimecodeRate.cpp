#include "qlab/TimecodeRate.h"

namespace ostrel::TimecodeRates {

int rawValue(TimecodeRate rate) noexcept
{
    return static_cast<int>(rate);
}

std::optional<TimecodeRate> fromRawValue(long long raw) noexcept
{
    if (raw < 0 || raw > 7) return std::nullopt;
    return static_cast<TimecodeRate>(raw);
}

int nominalFPS(TimecodeRate rate) noexcept
{
    switch (rate) {
    case TimecodeRate::fps24:
    case TimecodeRate::fps23976:
        return 24;
    case TimecodeRate::fps25:
    case TimecodeRate::fps24975:
        return 25;
    case TimecodeRate::fps30:
    case TimecodeRate::fps30Drop:
    case TimecodeRate::fps2997:
    case TimecodeRate::fps2997Drop:
        return 30;
    }
    return 25;
}

double actualFPS(TimecodeRate rate) noexcept
{
    switch (rate) {
    case TimecodeRate::fps24:
        return 24.0;
    case TimecodeRate::fps25:
        return 25.0;
    case TimecodeRate::fps30:
    case TimecodeRate::fps30Drop:
        return 30.0;
    case TimecodeRate::fps23976:
        return 24000.0 / 1001.0;
    case TimecodeRate::fps24975:
        return 24.975; // QLab's literal, not 25000/1001
    case TimecodeRate::fps2997:
    case TimecodeRate::fps2997Drop:
        return 30000.0 / 1001.0;
    }
    return 25.0;
}

bool isDropFrame(TimecodeRate rate) noexcept
{
    return rate == TimecodeRate::fps30Drop || rate == TimecodeRate::fps2997Drop;
}

std::string_view title(TimecodeRate rate) noexcept
{
    switch (rate) {
    case TimecodeRate::fps24:
        return "24 fps";
    case TimecodeRate::fps25:
        return "25 fps";
    case TimecodeRate::fps30:
        return "30 fps";
    case TimecodeRate::fps30Drop:
        return "30 fps drop";
    case TimecodeRate::fps23976:
        return "23.976 fps";
    case TimecodeRate::fps24975:
        return "24.975 fps";
    case TimecodeRate::fps2997:
        return "29.97 fps";
    case TimecodeRate::fps2997Drop:
        return "29.97 fps drop";
    }
    return "25 fps";
}

} // namespace ostrel::TimecodeRates
