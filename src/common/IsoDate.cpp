#include "common/IsoDate.h"

#include <chrono>

namespace ostrel::IsoDate {

QDateTime toQDateTime(Date date)
{
    const auto milliseconds
        = std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

Date fromQDateTime(const QDateTime& dateTime)
{
    return Date {} + std::chrono::milliseconds(dateTime.toMSecsSinceEpoch());
}

QString string(Date date)
{
    return toQDateTime(date).toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzzZ"));
}

std::optional<Date> parse(const QString& text)
{
    QDateTime parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!parsed.isValid() || parsed.timeSpec() == Qt::LocalTime) return std::nullopt;
    return fromQDateTime(parsed);
}

} // namespace ostrel::IsoDate
