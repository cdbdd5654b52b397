#include "dante/DanteEvent.h"

#include "common/RawValues.h"
#include "common/ReferenceDate.h"

namespace ostrel {

std::string_view DanteEvent::rawValue(Kind kind) noexcept
{
    switch (kind) {
    case Kind::droppedOut:
        return "droppedOut";
    case Kind::returned:
        return "returned";
    }
    return "droppedOut";
}

std::optional<DanteEvent::Kind> DanteEvent::kindFromRawValue(std::string_view raw) noexcept
{
    return RawValues::find(allKinds, raw, &DanteEvent::rawValue);
}

QJsonObject DanteEvent::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("id"), id.toString(QUuid::WithoutBraces).toUpper());
    json.insert(QStringLiteral("device"), device);
    const std::string_view kindText = rawValue(kind);
    json.insert(QStringLiteral("kind"),
        QString::fromLatin1(kindText.data(), static_cast<qsizetype>(kindText.size())));
    json.insert(QStringLiteral("date"), ReferenceDate::seconds(date));
    return json;
}

std::optional<DanteEvent> DanteEvent::fromJson(const QJsonObject& json)
{
    const QJsonValue id = json.value(QStringLiteral("id"));
    const QJsonValue device = json.value(QStringLiteral("device"));
    const QJsonValue kind = json.value(QStringLiteral("kind"));
    const QJsonValue date = json.value(QStringLiteral("date"));
    if (!id.isString() || !device.isString() || !kind.isString() || !date.isDouble())
        return std::nullopt;
    DanteEvent event;
    event.id = QUuid::fromString(id.toString());
    if (event.id.isNull()) return std::nullopt;
    event.device = device.toString();
    const QByteArray kindText = kind.toString().toUtf8();
    const auto parsedKind
        = kindFromRawValue(std::string_view(kindText.constData(), size_t(kindText.size())));
    const auto parsedDate = ReferenceDate::date(date.toDouble());
    if (!parsedKind || !parsedDate) return std::nullopt;
    event.kind = *parsedKind;
    event.date = *parsedDate;
    return event;
}

} // namespace ostrel
