#include "model/AppearanceMode.h"

#include "common/RawValues.h"

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
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
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
