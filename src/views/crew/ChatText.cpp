#include "views/crew/ChatText.h"

#include <QDateTime>

#include "network/QuickAlert.h"

namespace ostrel::ChatText {

QString time(Date date, const QTimeZone& zone)
{
    const auto milliseconds
        = std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, zone).toString(QStringLiteral("HH:mm:ss"));
}

QString symbol(const ChatMessage& message)
{
    if (message.alert) return QuickAlerts::systemImage(*message.alert);
    if (message.isUrgent) return QStringLiteral("exclamationmark.triangle.fill");
    return {};
}

QString cueSuffix(const ChatMessage& message)
{
    if (!message.cue) return {};
    return QStringLiteral(" \u00B7 Cue ") + *message.cue;
}

QString seenBy(const ChatMessage& message)
{
    if (message.acknowledgedBy.isEmpty()) return {};
    return QStringLiteral("Seen by ") + message.acknowledgedBy.join(QStringLiteral(", "));
}

} // namespace ostrel::ChatText
