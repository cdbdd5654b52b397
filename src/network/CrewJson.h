#pragma once

// Reading the crew's JSON values strictly: the wrong type is a failure, never a default.
#include <optional>
#include <string_view>

#include <QJsonValue>
#include <QString>
#include <QUuid>

#include "common/Date.h"

namespace ostrel::CrewJson {

std::optional<QString> text(const QJsonValue& value);
std::optional<bool> boolean(const QJsonValue& value);
// A number without a fraction that fits in 64 bits.
std::optional<std::int64_t> integer(const QJsonValue& value);
// Seconds since 2001-01-01 UTC.
std::optional<Date> date(const QJsonValue& value);
// The canonical 36-character form, either case.
std::optional<QUuid> uuid(const QJsonValue& value);
// Upper case, without braces.
QString uuidText(const QUuid& id);
QString rawText(std::string_view raw);

} // namespace ostrel::CrewJson
