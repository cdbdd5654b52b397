#include "sessions/LevelLogEntry.h"

#include "sessions/SessionArchive.h"
#include "sessions/SessionJson.h"

namespace ostrel {

QJsonObject LevelLogEntry::toJson() const
{
    return QJsonObject {
        {"time", SessionArchive::encodeDate(time)}, {"leq", leq}, {"maxLevel", maxLevel}};
}

std::optional<LevelLogEntry> LevelLogEntry::fromJson(const QJsonObject& object, QString* error)
{
    const auto time = SessionJson::date(object, "time", error);
    if (!time) return std::nullopt;
    const auto leq = SessionJson::number(object, "leq", error);
    if (!leq) return std::nullopt;
    const auto maxLevel = SessionJson::number(object, "maxLevel", error);
    if (!maxLevel) return std::nullopt;
    return LevelLogEntry {*time, *leq, *maxLevel};
}

} // namespace ostrel
