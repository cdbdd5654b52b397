#pragma once

// One-tap crew messages. Sent by their raw value.
#include <array>
#include <optional>
#include <string_view>

#include <QString>

namespace ostrel {

enum class QuickAlert { micDead, swappingPack, feedback, standBy, done };

namespace QuickAlerts {

inline constexpr std::array<QuickAlert, 5> all {QuickAlert::micDead, QuickAlert::swappingPack,
    QuickAlert::feedback, QuickAlert::standBy, QuickAlert::done};

std::string_view rawValue(QuickAlert alert) noexcept;
std::optional<QuickAlert> fromRawValue(std::string_view raw) noexcept;
QString title(QuickAlert alert);
// The symbol's name in the station's symbol table.
QString systemImage(QuickAlert alert);
bool isUrgent(QuickAlert alert) noexcept;
bool takesMic(QuickAlert alert) noexcept;
// "Mic dead: Lead Vocal" for an alert that takes a mic and has one; the title alone otherwise.
QString text(QuickAlert alert, const std::optional<QString>& mic);

} // namespace QuickAlerts
} // namespace ostrel
