#include "network/CrewJson.h"

#include <cmath>

#include "common/ReferenceDate.h"

namespace ostrel::CrewJson {

std::optional<QString> text(const QJsonValue& value)
{
    if (!value.isString()) return std::nullopt;
    return value.toString();
}

std::optional<bool> boolean(const QJsonValue& value)
{
    if (!value.isBool()) return std::nullopt;
    return value.toBool();
}

std::optional<std::int64_t> integer(const QJsonValue& value)
{
    if (!value.isDouble()) return std::nullopt;
    const double number = value.toDouble();
    // 2^63 itself does not fit, hence the strict upper bound.
    if (number != std::trunc(number) || number < -9.223372036854775808e18
        || number >= 9.223372036854775808e18)
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

std::optional<Date> date(const QJsonValue& value)
{
    if (!value.isDouble()) return std::nullopt;
    return ReferenceDate::date(value.toDouble());
}

std::optional<QUuid> uuid(const QJsonValue& value)
{
    if (!value.isString()) return std::nullopt;
    const QString textValue = value.toString();
    // QUuid also takes braces, which another station never sends.
    if (textValue.size() != 36) return std::nullopt;
    const QUuid id = QUuid::fromString(textValue);
    if (id.isNull() && textValue != QStringLiteral("00000000-0000-0000-0000-000000000000"))
        return std::nullopt;
    return id;
}

QString uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString rawText(std::string_view raw)
{
    return QString::fromLatin1(raw.data(), static_cast<qsizetype>(raw.size()));
}

} // namespace ostrel::CrewJson
