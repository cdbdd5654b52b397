#include "sessions/ShowSession.h"

#include <QJsonArray>

#include "sessions/SessionArchive.h"
#include "sessions/SessionJson.h"

namespace ostrel {

ShowSession::ShowSession(
    QString sessionName, Date startDate, QString setting, std::optional<QString> folderName)
    : id(QUuid::createUuid()),
      name(std::move(sessionName)),
      start(startDate),
      meterSetting(std::move(setting)),
      recordingFolderName(std::move(folderName))
{
}

double ShowSession::duration(Date at) const
{
    return secondsBetween(start, end.value_or(at));
}

QJsonObject ShowSession::toJson() const
{
    QJsonArray cueArray;
    for (const CueRecord& cue : cues)
        cueArray.append(cue.toJson());
    QJsonArray levelArray;
    for (const LevelLogEntry& entry : levels)
        levelArray.append(entry.toJson());

    QJsonObject object {{"id", SessionJson::uuidText(id)}, {"name", name},
        {"start", SessionArchive::encodeDate(start)}, {"meterSetting", meterSetting},
        {"statistics", statistics.toJson()}, {"cues", cueArray}, {"levels", levelArray}};
    if (end) object.insert("end", SessionArchive::encodeDate(*end));
    if (recordingFolderName) object.insert("recordingFolderName", *recordingFolderName);
    if (microphoneCorrection) object.insert("microphoneCorrection", *microphoneCorrection);
    return object;
}

namespace {

template <typename Record>
bool readRecords(
    const QJsonObject& object, const char* key, std::vector<Record>& records, QString* error)
{
    const auto array = SessionJson::array(object, key, error);
    if (!array) return false;
    records.reserve(static_cast<std::size_t>(array->size()));
    for (const QJsonValue& value : *array) {
        if (!value.isObject())
            return SessionJson::fail(error,
                QStringLiteral("An entry of \"%1\" is not an object.").arg(QLatin1String(key)));
        auto record = Record::fromJson(value.toObject(), error);
        if (!record) return false;
        records.push_back(std::move(*record));
    }
    return true;
}

} // namespace

std::optional<ShowSession> ShowSession::fromJson(const QJsonObject& object, QString* error)
{
    using namespace SessionJson;
    ShowSession session;
    const auto id = uuid(object, "id", error);
    if (!id) return std::nullopt;
    session.id = *id;
    if (!readString(object, "name", session.name, error)
        || !readString(object, "meterSetting", session.meterSetting, error))
        return std::nullopt;
    const auto start = date(object, "start", error);
    if (!start) return std::nullopt;
    session.start = *start;
    if (!readOptionalDate(object, "end", session.end, error)) return std::nullopt;
    const auto statistics = SessionJson::statistics(object, "statistics", error);
    if (!statistics) return std::nullopt;
    session.statistics = *statistics;
    if (!readRecords(object, "cues", session.cues, error)
        || !readRecords(object, "levels", session.levels, error)
        || !readOptionalString(object, "recordingFolderName", session.recordingFolderName, error)
        || !readOptionalString(object, "microphoneCorrection", session.microphoneCorrection, error))
        return std::nullopt;
    return session;
}

} // namespace ostrel
