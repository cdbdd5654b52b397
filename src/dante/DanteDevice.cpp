#include "dante/DanteDevice.h"

#include "common/ReferenceDate.h"

namespace ostrel {

namespace {

void putOptional(QJsonObject& json, const char* key, const std::optional<QString>& value)
{
    if (value) json.insert(QLatin1String(key), *value);
}

// Absent when missing; false when present but not text.
bool readOptional(const QJsonObject& json, const char* key, std::optional<QString>& value)
{
    const QJsonValue raw = json.value(QLatin1String(key));
    if (raw.isUndefined() || raw.isNull()) return true;
    if (!raw.isString()) return false;
    value = raw.toString();
    return true;
}

std::optional<Date> readDate(const QJsonObject& json, const char* key)
{
    const QJsonValue raw = json.value(QLatin1String(key));
    if (!raw.isDouble()) return std::nullopt;
    return ReferenceDate::date(raw.toDouble());
}

} // namespace

QJsonObject DanteDevice::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("id"), id);
    putOptional(json, "model", model);
    putOptional(json, "manufacturer", manufacturer);
    putOptional(json, "firmware", firmware);
    putOptional(json, "address", address);
    json.insert(QStringLiteral("isOnline"), isOnline);
    json.insert(QStringLiteral("firstSeen"), ReferenceDate::seconds(firstSeen));
    json.insert(QStringLiteral("lastChange"), ReferenceDate::seconds(lastChange));
    return json;
}

std::optional<DanteDevice> DanteDevice::fromJson(const QJsonObject& json)
{
    DanteDevice device;
    const QJsonValue id = json.value(QStringLiteral("id"));
    const QJsonValue online = json.value(QStringLiteral("isOnline"));
    if (!id.isString() || !online.isBool()) return std::nullopt;
    device.id = id.toString();
    device.isOnline = online.toBool();
    if (!readOptional(json, "model", device.model)
        || !readOptional(json, "manufacturer", device.manufacturer)
        || !readOptional(json, "firmware", device.firmware)
        || !readOptional(json, "address", device.address))
        return std::nullopt;
    const auto firstSeen = readDate(json, "firstSeen");
    const auto lastChange = readDate(json, "lastChange");
    if (!firstSeen || !lastChange) return std::nullopt;
    device.firstSeen = *firstSeen;
    device.lastChange = *lastChange;
    return device;
}

} // namespace ostrel
