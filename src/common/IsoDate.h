#pragma once

// Dates as stored text: ISO 8601 in UTC with milliseconds and "Z", e.g.
// "2026-11-22T01:40:20.123Z".
#include <optional>

#include <QDateTime>
#include <QString>

#include "common/Date.h"

namespace ostrel::IsoDate {

QString string(Date date);
// Accepts the stored form, with or without milliseconds; anything else is absent.
std::optional<Date> parse(const QString& text);
QDateTime toQDateTime(Date date);
Date fromQDateTime(const QDateTime& dateTime);

} // namespace ostrel::IsoDate
