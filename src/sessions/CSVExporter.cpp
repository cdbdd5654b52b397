#include "sessions/CSVExporter.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <QDateTime>
#include <QStringList>

namespace ostrel::CSVExporter {

namespace {

QString encode(const std::vector<QStringList>& rows)
{
    QString text;
    for (const QStringList& row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i > 0) text += QLatin1Char(',');
            text += escape(row[i]);
        }
        text += QStringLiteral("\r\n");
    }
    return text;
}

QString optionalLevel(std::optional<double> value)
{
    return value ? level(*value) : QString();
}

} // namespace

QString level(double value)
{
    // std::to_chars rounds like printf but never looks at the C locale, which Qt sets from the
    // environment.
    std::array<char, 400> buffer {};
    const auto result = std::to_chars(
        buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 1);
    return QString::fromLatin1(buffer.data(), result.ptr - buffer.data());
}

QString timestamp(Date date, const QTimeZone& zone)
{
    const auto milliseconds
        = std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, zone)
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString escape(const QString& field)
{
    static constexpr std::array<char16_t, 9> specials {
        u',', u'"', u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'};
    const bool needsQuotes = std::any_of(field.begin(), field.end(), [](QChar c) {
        return std::find(specials.begin(), specials.end(), c.unicode()) != specials.end();
    });
    if (!needsQuotes) return field;
    QString quoted = field;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString cues(const std::vector<CueRecord>& records, Date now, const QTimeZone& zone)
{
    std::vector<QStringList> rows;
    rows.reserve(records.size() + 1);
    rows.push_back({QStringLiteral("Cue Number"), QStringLiteral("Cue Name"),
        QStringLiteral("Cue Type"), QStringLiteral("Start"), QStringLiteral("End"),
        QStringLiteral("Duration (s)"), QStringLiteral("Peak (dB)"), QStringLiteral("Max (dB)"),
        QStringLiteral("Leq (dB)"), QStringLiteral("Meter")});
    for (const CueRecord& record : records) {
        rows.push_back({record.number, record.name, record.type, timestamp(record.start, zone),
            record.end ? timestamp(*record.end, zone) : QString(), level(record.duration(now)),
            optionalLevel(record.statistics.peak()), optionalLevel(record.statistics.maxLevel),
            optionalLevel(record.statistics.leq()), record.meterSetting});
    }
    return encode(rows);
}

QString levels(const std::vector<LevelLogEntry>& entries, const QTimeZone& zone)
{
    std::vector<QStringList> rows;
    rows.reserve(entries.size() + 1);
    rows.push_back(
        {QStringLiteral("Time"), QStringLiteral("Leq 1s (dB)"), QStringLiteral("Max (dB)")});
    for (const LevelLogEntry& entry : entries)
        rows.push_back({timestamp(entry.time, zone), level(entry.leq), level(entry.maxLevel)});
    return encode(rows);
}

} // namespace ostrel::CSVExporter
