#include "exposure/ExposureProfile.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace ostrel {

namespace {

std::optional<double> number(std::string_view text)
{
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || last != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

} // namespace

ExposureProfile ExposureProfile::builtIn(ExposureProfileKind kind)
{
    ExposureProfile profile;
    profile.kind = kind;
    switch (kind) {
    case ExposureProfileKind::who:
        profile.windowSeconds = 15 * 60.0;
        profile.limit = 100.0;
        profile.peakLimit = 140.0;
        break;
    case ExposureProfileKind::swiss:
        profile.windowSeconds = 60 * 60.0;
        profile.limit = 100.0;
        profile.bands = {93.0, 96.0};
        break;
    case ExposureProfileKind::din:
        profile.windowSeconds = 30 * 60.0;
        profile.limit = 99.0;
        profile.peakLimit = 135.0;
        break;
    case ExposureProfileKind::uk:
        profile.windowSeconds = dailyReferenceSeconds;
        profile.limit = 85.0;
        profile.peakLimit = 137.0;
        profile.bands = {80.0};
        profile.isDailyExposure = true;
        break;
    case ExposureProfileKind::custom:
        return custom(15.0, 100.0);
    }
    return profile;
}

ExposureProfile ExposureProfile::custom(
    double minutes, double limit, double margin, std::optional<double> peakLimit)
{
    ExposureProfile profile;
    profile.kind = ExposureProfileKind::custom;
    profile.windowSeconds = std::clamp(minutes, 1.0, 60.0) * 60.0;
    profile.limit = limit;
    profile.margin = std::max(margin, 0.0);
    profile.peakLimit = peakLimit;
    return profile;
}

std::optional<ExposureProfile> ExposureProfile::parse(std::string_view text)
{
    constexpr std::string_view customPrefix = "custom:";
    if (text.substr(0, customPrefix.size()) == customPrefix) {
        const std::string_view rest = text.substr(customPrefix.size());
        const std::size_t colon = rest.find(':');
        if (colon == std::string_view::npos) return std::nullopt;
        const auto minutes = number(rest.substr(0, colon));
        const auto limit = number(rest.substr(colon + 1));
        if (!minutes || !limit || *minutes < 1.0 || *minutes > 60.0) return std::nullopt;
        return custom(*minutes, *limit);
    }
    const auto kind = ExposureProfileKinds::fromRawValue(text);
    if (!kind || *kind == ExposureProfileKind::custom) return std::nullopt;
    return builtIn(*kind);
}

namespace ExposureProfileKinds {

std::string_view rawValue(ExposureProfileKind kind) noexcept
{
    switch (kind) {
    case ExposureProfileKind::who:
        return "who";
    case ExposureProfileKind::swiss:
        return "swiss";
    case ExposureProfileKind::din:
        return "din";
    case ExposureProfileKind::uk:
        return "uk";
    case ExposureProfileKind::custom:
        return "custom";
    }
    return "who";
}

std::optional<ExposureProfileKind> fromRawValue(std::string_view raw) noexcept
{
    for (const ExposureProfileKind kind : all)
        if (rawValue(kind) == raw) return kind;
    return std::nullopt;
}

} // namespace ExposureProfileKinds
} // namespace ostrel
