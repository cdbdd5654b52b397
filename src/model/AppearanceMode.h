#pragma once

// The window appearance the user forces, or the system's own.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class AppearanceMode { system, light, dark };

namespace AppearanceModes {
inline constexpr std::array<AppearanceMode, 3> all {
    AppearanceMode::system, AppearanceMode::light, AppearanceMode::dark};
std::string_view rawValue(AppearanceMode mode) noexcept;
std::optional<AppearanceMode> fromRawValue(std::string_view raw) noexcept;
std::string_view title(AppearanceMode mode) noexcept;
} // namespace AppearanceModes

} // namespace ostrel
