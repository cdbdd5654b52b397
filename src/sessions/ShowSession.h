#pragma once

// The record of one performance: its name and times, the level of the whole show, the cues
// that ran in it and a level log once a second. What the archive stores and replay reads.
#include <optional>
#include <vector>

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include "common/Date.h"
#include "measurement/LevelStatistics.h"
#include "sessions/CueRecord.h"
#include "sessions/LevelLogEntry.h"

namespace ostrel {

struct ShowSession {
    QUuid id;
    QString name; // the user's name for the session
    Date start;
    std::optional<Date> end; // absent while running
    QString meterSetting; // at the start
    LevelStatistics statistics; // the whole session
    std::vector<CueRecord> cues; // in order of start once the session is finished
    std::vector<LevelLogEntry> levels; // one a second, when level history is on
    std::optional<QString> recordingFolderName;
    std::optional<QString> microphoneCorrection; // the correction's name at the start

    // For decoding; a new session comes from the other constructor.
    ShowSession() = default;
    // A new `id`, empty statistics, cues and levels, no end.
    ShowSession(QString sessionName, Date startDate, QString setting,
        std::optional<QString> folderName = std::nullopt);

    double duration(Date at) const;
    std::optional<double> maximumLevel() const { return statistics.maxLevel; }
    std::optional<double> averageLeq() const { return statistics.leq(); }

    // The field names as keys, dates in the session files' ISO 8601 form; absent optional
    // fields are left out.
    QJsonObject toJson() const;
    // Optional fields may be missing or null; every other key is required. Nothing when
    // anything fails to read, down to one cue or log entry; `error` then names the problem.
    static std::optional<ShowSession> fromJson(const QJsonObject& object, QString* error = nullptr);

    bool operator==(const ShowSession&) const = default;
};

} // namespace ostrel
