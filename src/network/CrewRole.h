#pragma once

// What this station is in a crew. Stored and sent by its raw value.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class CrewRole { standalone, primary, secondary };

namespace CrewRoles {

inline constexpr std::array<CrewRole, 3> all {
    CrewRole::standalone, CrewRole::primary, CrewRole::secondary};

std::string_view rawValue(CrewRole role) noexcept;
std::optional<CrewRole> fromRawValue(std::string_view raw) noexcept;
std::string_view title(CrewRole role) noexcept;
std::string_view summary(CrewRole role) noexcept;

} // namespace CrewRoles
} // namespace ostrel
