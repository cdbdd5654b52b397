#include "mics/MicIssue.h"

#include <cmath>

#include "common/RawValues.h"
#include "common/ReferenceDate.h"

namespace ostrel {

int MicIssueKinds::rawValue(MicIssueKind kind)
{
    return static_cast<int>(kind);
}

std::optional<MicIssueKind> MicIssueKinds::fromRawValue(long long raw)
{
    return RawValues::find(all, raw, [](MicIssueKind kind) { return (long long)rawValue(kind); });
}

QString MicIssueKinds::title(MicIssueKind kind)
{
    switch (kind) {
    case MicIssueKind::dropout:
        return QStringLiteral("Dropout");
    case MicIssueKind::receiverOffline:
        return QStringLiteral("Not responding");
    case MicIssueKind::lowSignal:
        return QStringLiteral("Low signal");
    case MicIssueKind::lowBattery:
        return QStringLiteral("Low battery");
    }
    return {};
}

bool MicIssueKinds::isUrgent(MicIssueKind kind)
{
    return kind == MicIssueKind::dropout || kind == MicIssueKind::receiverOffline;
}

QString micIssueId(const QString& key, MicIssueKind kind)
{
    return key + u'|' + QString::number(MicIssueKinds::rawValue(kind));
}

QString MicIssue::id() const
{
    return micIssueId(key, kind);
}

QJsonObject MicIssue::toJson() const
{
    return QJsonObject {{QStringLiteral("key"), key}, {QStringLiteral("name"), name},
        {QStringLiteral("kind"), MicIssueKinds::rawValue(kind)},
        {QStringLiteral("since"), ReferenceDate::seconds(since)}};
}

std::optional<MicIssue> MicIssue::fromJson(const QJsonObject& object)
{
    const auto key = object.value(QStringLiteral("key"));
    const auto name = object.value(QStringLiteral("name"));
    const auto kind = object.value(QStringLiteral("kind"));
    const auto since = object.value(QStringLiteral("since"));
    if (!key.isString() || !name.isString() || !kind.isDouble() || !since.isDouble())
        return std::nullopt;
    const double rawKind = kind.toDouble();
    // Anything but a whole number the kinds know fails, before it is cast.
    if (!(rawKind >= 0.0 && rawKind <= 3.0) || rawKind != std::floor(rawKind)) return std::nullopt;
    const auto parsedKind = MicIssueKinds::fromRawValue(static_cast<long long>(rawKind));
    const auto date = ReferenceDate::date(since.toDouble());
    if (!parsedKind || !date) return std::nullopt;
    return MicIssue {key.toString(), name.toString(), *parsedKind, *date};
}

} // namespace ostrel
