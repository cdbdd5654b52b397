#include "network/ChatMessage.h"

#include <QJsonArray>

#include "common/ReferenceDate.h"
#include "network/CrewJson.h"

namespace ostrel {

QJsonObject ChatMessage::toJson() const
{
    QJsonObject object {{"id", CrewJson::uuidText(id)}, {"sender", sender}, {"text", text},
        {"date", ReferenceDate::seconds(date)}, {"isUrgent", isUrgent},
        {"acknowledgedBy", QJsonArray::fromStringList(acknowledgedBy)}};
    if (alert) object.insert("alert", CrewJson::rawText(QuickAlerts::rawValue(*alert)));
    if (cue) object.insert("cue", *cue);
    return object;
}

std::optional<ChatMessage> ChatMessage::fromJson(const QJsonObject& object)
{
    const auto id = CrewJson::uuid(object.value("id"));
    const auto sender = CrewJson::text(object.value("sender"));
    const auto text = CrewJson::text(object.value("text"));
    const auto date = CrewJson::date(object.value("date"));
    const auto isUrgent = CrewJson::boolean(object.value("isUrgent"));
    const QJsonValue acknowledged = object.value("acknowledgedBy");
    if (!id || !sender || !text || !date || !isUrgent || !acknowledged.isArray())
        return std::nullopt;

    ChatMessage message {*id, *sender, *text, *date, *isUrgent, std::nullopt, std::nullopt, {}};
    for (const QJsonValue& station : acknowledged.toArray()) {
        if (!station.isString()) return std::nullopt;
        message.acknowledgedBy.append(station.toString());
    }
    // Missing or null is absent; anything else must be readable.
    const QJsonValue alert = object.value("alert");
    if (!alert.isUndefined() && !alert.isNull()) {
        if (!alert.isString()) return std::nullopt;
        const QByteArray raw = alert.toString().toUtf8();
        message.alert = QuickAlerts::fromRawValue(
            std::string_view(raw.constData(), static_cast<std::size_t>(raw.size())));
        if (!message.alert) return std::nullopt;
    }
    const QJsonValue cue = object.value("cue");
    if (!cue.isUndefined() && !cue.isNull()) {
        message.cue = CrewJson::text(cue);
        if (!message.cue) return std::nullopt;
    }
    return message;
}

} // namespace ostrel
