#pragma once

// One line of crew chat, urgent or not, as every station keeps and relays it.
#include <optional>

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "common/Date.h"
#include "network/QuickAlert.h"

namespace ostrel {

struct ChatMessage {
    QUuid id;
    QString sender;
    QString text;
    Date date {};
    bool isUrgent = false;
    std::optional<QuickAlert> alert;
    std::optional<QString> cue;
    QStringList acknowledgedBy;

    // Keys id, sender, text, date, isUrgent, alert, cue, acknowledgedBy; alert and cue left
    // out when absent. The id in canonical upper case, the date in seconds since 2001.
    QJsonObject toJson() const;
    // Nothing when a required key is missing, a value has the wrong type, the alert is unknown
    // or the date can't be a date.
    static std::optional<ChatMessage> fromJson(const QJsonObject& object);

    bool operator==(const ChatMessage&) const = default;
};

} // namespace ostrel
