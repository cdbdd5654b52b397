#pragma once

// How far the station's link to QLab has got. Shown on every screen and mirrored to the crew,
// which sends it by its raw value.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class QLabClientState {
    off,
    connecting,
    connected,
    noWorkspace,
    passcodeRequired,
    disconnected
};

namespace QLabClientStates {

inline constexpr std::array<QLabClientState, 6> all {QLabClientState::off,
    QLabClientState::connecting, QLabClientState::connected, QLabClientState::noWorkspace,
    QLabClientState::passcodeRequired, QLabClientState::disconnected};

std::string_view rawValue(QLabClientState state) noexcept;
std::optional<QLabClientState> fromRawValue(std::string_view raw) noexcept;
// The state in words, as the status line and the settings show it.
std::string_view title(QLabClientState state) noexcept;

} // namespace QLabClientStates
} // namespace ostrel
