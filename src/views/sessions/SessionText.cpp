#include "views/sessions/SessionText.h"

#include <cmath>

#include "common/IsoDate.h"
#include "views/level/LevelText.h"

namespace ostrel::SessionText {

QString decibels(const std::optional<double>& level, const QLocale& locale)
{
    if (!level || !std::isfinite(*level)) return QString::fromUtf16(LevelText::missing);
    return locale.toString(*level, 'f', 1);
}

QString duration(double seconds)
{
    const auto total = static_cast<long long>(std::floor(std::max(seconds, 0.0)));
    const long long hours = total / 3600;
    const long long minutes = total / 60 % 60;
    const long long rest = total % 60;
    if (hours > 0)
        return QStringLiteral("%1:%2:%3")
            .arg(hours)
            .arg(minutes, 2, 10, QLatin1Char('0'))
            .arg(rest, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1:%2").arg(minutes).arg(rest, 2, 10, QLatin1Char('0'));
}

QString time(Date date, const QLocale& locale)
{
    return locale.toString(IsoDate::toQDateTime(date).toLocalTime().time(), QLocale::ShortFormat);
}

} // namespace ostrel::SessionText
