#include "model/AppearanceMode.h"

namespace ostrel::AppearanceModes {

std::string_view rawValue(AppearanceMode mode) noexcept
{
    switch (mode) {
    case AppearanceMode::system:
        return "system";
    case AppearanceMode::light:
        return "light";
    case AppearanceMode::dark:
        return "dark";
    }
    return "system";
}

std::optional<AppearanceMode> fromRawValue(std::string_view raw) noexcept
{
    for (auto mode : all) {
        if (rawValue(mode) == raw) return mode;
    }
    return std::nullopt;
}

std::string_view title(AppearanceMode mode) noexcept
{
    switch (mode) {
    case AppearanceMode::system:
        return "Automatic";
    case AppearanceMode::light:
        return "Light";
    case AppearanceMode::dark:
        return "Dark";
    }
    return "Automatic";
}

} // namespace ostrel::AppearanceModes
