#include "network/QuickAlert.h"

#include "common/RawValues.h"

namespace ostrel::QuickAlerts {

std::string_view rawValue(QuickAlert alert) noexcept
{
    switch (alert) {
    case QuickAlert::micDead:
        return "micDead";
    case QuickAlert::swappingPack:
        return "swappingPack";
    case QuickAlert::feedback:
        return "feedback";
    case QuickAlert::standBy:
        return "standBy";
    case QuickAlert::done:
        return "done";
    }
    return "done";
}

std::optional<QuickAlert> fromRawValue(std::string_view raw) noexcept
{
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
}

QString title(QuickAlert alert)
{
    switch (alert) {
    case QuickAlert::micDead:
        return QStringLiteral("Mic dead");
    case QuickAlert::swappingPack:
        return QStringLiteral("Swapping pack");
    case QuickAlert::feedback:
        return QStringLiteral("Feedback");
    case QuickAlert::standBy:
        return QStringLiteral("Stand by");
    case QuickAlert::done:
        return QStringLiteral("Done");
    }
    return {};
}

QString systemImage(QuickAlert alert)
{
    switch (alert) {
    case QuickAlert::micDead:
        return QStringLiteral("mic.slash.fill");
    case QuickAlert::swappingPack:
        return QStringLiteral("arrow.triangle.2.circlepath");
    case QuickAlert::feedback:
        return QStringLiteral("waveform.badge.exclamationmark");
    case QuickAlert::standBy:
        return QStringLiteral("hand.raised.fill");
    case QuickAlert::done:
        return QStringLiteral("checkmark.circle.fill");
    }
    return {};
}

bool isUrgent(QuickAlert alert) noexcept
{
    return alert == QuickAlert::micDead || alert == QuickAlert::feedback;
}

bool takesMic(QuickAlert alert) noexcept
{
    return alert == QuickAlert::micDead || alert == QuickAlert::swappingPack;
}

QString text(QuickAlert alert, const std::optional<QString>& mic)
{
    if (takesMic(alert) && mic && !mic->isEmpty())
        return title(alert) + QStringLiteral(": ") + *mic;
    return title(alert);
}

} // namespace ostrel::QuickAlerts
