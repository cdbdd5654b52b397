#include "sessions/SessionJson.h"

#include <QJsonValue>

#include "sessions/SessionArchive.h"

namespace ostrel::SessionJson {

namespace {

QJsonValue valueOf(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key));
}

bool isAbsent(const QJsonValue& value)
{
    return value.isUndefined() || value.isNull();
}

QString missing(const char* key)
{
    return QStringLiteral("Missing or mistyped value for \"%1\".").arg(QLatin1String(key));
}

} // namespace

QString uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

bool fail(QString* error, const QString& text)
{
    if (error) *error = text;
    return false;
}

std::optional<QUuid> uuid(const QJsonObject& object, const char* key, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    const QString text = value.toString();
    // QUuid also takes braces and reads garbage as the nil UUID; neither is a stored UUID.
    const QUuid id = QUuid::fromString(text);
    const bool isNilText = text == QLatin1String("00000000-0000-0000-0000-000000000000");
    if (!value.isString() || text.size() != 36 || (id.isNull() && !isNilText)) {
        fail(error, QStringLiteral("Not a UUID for \"%1\": %2").arg(QLatin1String(key), text));
        return std::nullopt;
    }
    return id;
}

std::optional<Date> date(const QJsonObject& object, const char* key, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (!value.isString()) {
        fail(error, missing(key));
        return std::nullopt;
    }
    return SessionArchive::decodeDate(value.toString(), error);
}

std::optional<double> number(const QJsonObject& object, const char* key, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (!value.isDouble()) {
        fail(error, missing(key));
        return std::nullopt;
    }
    return value.toDouble();
}

std::optional<QJsonArray> array(const QJsonObject& object, const char* key, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (!value.isArray()) {
        fail(error, missing(key));
        return std::nullopt;
    }
    return value.toArray();
}

std::optional<LevelStatistics> statistics(
    const QJsonObject& object, const char* key, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    auto decoded = value.isObject() ? LevelStatistics::fromJson(value.toObject()) : std::nullopt;
    if (!decoded) fail(error, missing(key));
    return decoded;
}

bool readString(const QJsonObject& object, const char* key, QString& field, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (!value.isString()) return fail(error, missing(key));
    field = value.toString();
    return true;
}

bool readOptionalDate(
    const QJsonObject& object, const char* key, std::optional<Date>& field, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (isAbsent(value)) return true;
    if (!value.isString()) return fail(error, missing(key));
    field = SessionArchive::decodeDate(value.toString(), error);
    return field.has_value();
}

bool readOptionalString(
    const QJsonObject& object, const char* key, std::optional<QString>& field, QString* error)
{
    const QJsonValue value = valueOf(object, key);
    if (isAbsent(value)) return true;
    if (!value.isString()) return fail(error, missing(key));
    field = value.toString();
    return true;
}

} // namespace ostrel::SessionJson
