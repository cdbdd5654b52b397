#include "network/CrewRole.h"

#include "common/RawValues.h"

namespace ostrel::CrewRoles {

std::string_view rawValue(CrewRole role) noexcept
{
    switch (role) {
    case CrewRole::standalone:
        return "standalone";
    case CrewRole::primary:
        return "primary";
    case CrewRole::secondary:
        return "secondary";
    }
    return "standalone";
}

std::optional<CrewRole> fromRawValue(std::string_view raw) noexcept
{
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
}

std::string_view title(CrewRole role) noexcept
{
    switch (role) {
    case CrewRole::standalone:
        return "Standalone";
    case CrewRole::primary:
        return "Primary (FOH)";
    case CrewRole::secondary:
        return "Secondary";
    }
    return "Standalone";
}

std::string_view summary(CrewRole role) noexcept
{
    switch (role) {
    case CrewRole::standalone:
        return "This computer measures on its own and doesn't join a crew.";
    case CrewRole::primary:
        return "This computer measures with its own microphone and QLab, and shares the level, "
               "spectrum, cues, Dante and radio-mic alerts with every secondary on the network. "
               "Only the primary records sessions.";
    case CrewRole::secondary:
        return "This computer shows the primary's level, spectrum, cues, Dante and radio-mic "
               "alerts, and doesn't use its own microphone or QLab.";
    }
    return {};
}

} // namespace ostrel::CrewRoles
