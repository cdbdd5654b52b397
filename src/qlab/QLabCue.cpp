#include "qlab/QLabCue.h"

#include <algorithm>
#include <cmath>

#include <QJsonValue>

#include "common/ReferenceDate.h"

namespace ostrel {

bool QLabCue::isTimecodeCue() const
{
    return type.contains(QLatin1String("timecode"), Qt::CaseInsensitive);
}

std::optional<TimecodeRate> QLabCue::reportedTimecodeRate() const
{
    if (!timecodeRateIndex) return std::nullopt;
    return TimecodeRates::fromRawValue(*timecodeRateIndex);
}

QString QLabCue::displayName() const
{
    if (!name.isEmpty()) return name;
    return QStringLiteral("Untitled %1 Cue").arg(type);
}

double QLabCue::elapsed(Date at) const
{
    if (actionElapsed && sampledAt) {
        if (isPaused) return *actionElapsed;
        return *actionElapsed + std::max(0.0, secondsBetween(*sampledAt, at));
    }
    return std::max(0.0, secondsBetween(startedAt, at));
}

std::optional<double> QLabCue::remaining(Date at) const
{
    if (!duration || !(*duration > 0)) return std::nullopt;
    return std::max(0.0, *duration - elapsed(at));
}

void QLabCue::adoptTiming(const QLabCue& previous)
{
    isPaused = previous.isPaused;
    actionElapsed = previous.actionElapsed;
    duration = previous.duration;
    sampledAt = previous.sampledAt;
    startedAt = previous.startedAt;
    if (!parentID) parentID = previous.parentID;
    if (!timecodeStart) timecodeStart = previous.timecodeStart;
    if (!timecodeRateIndex) timecodeRateIndex = previous.timecodeRateIndex;
    if (!timecodeOutputType) timecodeOutputType = previous.timecodeOutputType;
}

namespace {

// Optional keys: missing or null is absent; anything but the right type spoils the whole cue.
template <typename T, typename Read>
bool readOptional(const QJsonObject& object, const char* key, std::optional<T>& field, Read read)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) return true;
    auto parsed = read(value);
    if (!parsed) return false;
    field = std::move(*parsed);
    return true;
}

std::optional<double> jsonNumber(const QJsonValue& value)
{
    if (!value.isDouble()) return std::nullopt;
    return value.toDouble();
}

std::optional<QString> jsonText(const QJsonValue& value)
{
    if (!value.isString()) return std::nullopt;
    return value.toString();
}

std::optional<Date> jsonDate(const QJsonValue& value)
{
    if (!value.isDouble()) return std::nullopt;
    return ReferenceDate::date(value.toDouble());
}

std::optional<std::int64_t> jsonInteger(const QJsonValue& value)
{
    if (!value.isDouble()) return std::nullopt;
    const double number = value.toDouble();
    // 2^63 itself does not fit, hence the strict upper bound.
    if (number != std::trunc(number) || number < -9.223372036854775808e18
        || number >= 9.223372036854775808e18)
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

} // namespace

QJsonObject QLabCue::toJson() const
{
    QJsonObject object {{"id", id}, {"number", number}, {"name", name}, {"type", type},
        {"isPaused", isPaused}, {"startedAt", ReferenceDate::seconds(startedAt)}};
    if (actionElapsed) object.insert("actionElapsed", *actionElapsed);
    if (duration) object.insert("duration", *duration);
    if (sampledAt) object.insert("sampledAt", ReferenceDate::seconds(*sampledAt));
    if (parentID) object.insert("parentID", *parentID);
    if (timecodeStart) object.insert("timecodeStart", *timecodeStart);
    if (timecodeRateIndex)
        object.insert("timecodeRateIndex", static_cast<qint64>(*timecodeRateIndex));
    if (timecodeOutputType)
        object.insert("timecodeOutputType", static_cast<qint64>(*timecodeOutputType));
    return object;
}

std::optional<QLabCue> QLabCue::fromJson(const QJsonObject& object)
{
    const QJsonValue idValue = object.value("id");
    const QJsonValue numberValue = object.value("number");
    const QJsonValue nameValue = object.value("name");
    const QJsonValue typeValue = object.value("type");
    const QJsonValue pausedValue = object.value("isPaused");
    const auto started = jsonDate(object.value("startedAt"));
    if (!idValue.isString() || !numberValue.isString() || !nameValue.isString()
        || !typeValue.isString() || !pausedValue.isBool() || !started)
        return std::nullopt;

    QLabCue cue;
    cue.id = idValue.toString();
    cue.number = numberValue.toString();
    cue.name = nameValue.toString();
    cue.type = typeValue.toString();
    cue.isPaused = pausedValue.toBool();
    cue.startedAt = *started;
    const bool readable = readOptional(object, "actionElapsed", cue.actionElapsed, jsonNumber)
        && readOptional(object, "duration", cue.duration, jsonNumber)
        && readOptional(object, "sampledAt", cue.sampledAt, jsonDate)
        && readOptional(object, "parentID", cue.parentID, jsonText)
        && readOptional(object, "timecodeStart", cue.timecodeStart, jsonText)
        && readOptional(object, "timecodeRateIndex", cue.timecodeRateIndex, jsonInteger)
        && readOptional(object, "timecodeOutputType", cue.timecodeOutputType, jsonInteger);
    if (!readable) return std::nullopt;
    return cue;
}

} // namespace ostrel
