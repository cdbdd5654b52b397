#include "qlab/QLabClientState.h"

#include "common/RawValues.h"

namespace ostrel::QLabClientStates {

std::string_view rawValue(QLabClientState state) noexcept
{
    switch (state) {
    case QLabClientState::off:
        return "off";
    case QLabClientState::connecting:
        return "connecting";
    case QLabClientState::connected:
        return "connected";
    case QLabClientState::noWorkspace:
        return "noWorkspace";
    case QLabClientState::passcodeRequired:
        return "passcodeRequired";
    case QLabClientState::disconnected:
        return "disconnected";
    }
    return "disconnected";
}

std::optional<QLabClientState> fromRawValue(std::string_view raw) noexcept
{
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
}

std::string_view title(QLabClientState state) noexcept
{
    switch (state) {
    case QLabClientState::off:
        return "Off";
    case QLabClientState::connecting:
        return "Connecting…";
    case QLabClientState::connected:
        return "Connected";
    case QLabClientState::noWorkspace:
        return "No Workspace Open";
    case QLabClientState::passcodeRequired:
        return "Passcode Required";
    case QLabClientState::disconnected:
        return "Not Connected";
    }
    return "Not Connected";
}

} // namespace ostrel::QLabClientStates
