#include "sessions/CueRecord.h"

#include "sessions/SessionArchive.h"
#include "sessions/SessionJson.h"

namespace ostrel {

double CueRecord::duration(Date at) const
{
    return secondsBetween(start, end.value_or(at));
}

QJsonObject CueRecord::toJson() const
{
    QJsonObject object {{"id", SessionJson::uuidText(id)}, {"cueID", cueID}, {"number", number},
        {"name", name}, {"type", type}, {"start", SessionArchive::encodeDate(start)},
        {"meterSetting", meterSetting}, {"statistics", statistics.toJson()}};
    if (end) object.insert("end", SessionArchive::encodeDate(*end));
    return object;
}

std::optional<CueRecord> CueRecord::fromJson(const QJsonObject& object, QString* error)
{
    using namespace SessionJson;
    CueRecord record;
    const auto id = uuid(object, "id", error);
    if (!id) return std::nullopt;
    record.id = *id;
    if (!readString(object, "cueID", record.cueID, error)
        || !readString(object, "number", record.number, error)
        || !readString(object, "name", record.name, error)
        || !readString(object, "type", record.type, error)
        || !readString(object, "meterSetting", record.meterSetting, error))
        return std::nullopt;
    const auto start = date(object, "start", error);
    if (!start) return std::nullopt;
    record.start = *start;
    if (!readOptionalDate(object, "end", record.end, error)) return std::nullopt;
    const auto statistics = SessionJson::statistics(object, "statistics", error);
    if (!statistics) return std::nullopt;
    record.statistics = *statistics;
    return record;
}

} // namespace ostrel
