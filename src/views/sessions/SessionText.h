#pragma once

// How the session views write levels, durations and times.
#include <optional>

#include <QLocale>
#include <QString>

#include "common/Date.h"

namespace ostrel::SessionText {

// One decimal, or an em dash when there is no level.
QString decibels(const std::optional<double>& level, const QLocale& locale = QLocale());
// "0:42", "12:05", "1:02:03".
QString duration(double seconds);
// The time of day in the locale's short form, in local time.
QString time(Date date, const QLocale& locale = QLocale());

} // namespace ostrel::SessionText
