#pragma once

// One run of one QLab cue: how loud the room was while it ran. The unit of the cue history, of
// a session's cue list and of the cue CSV.
#include <optional>

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include "common/Date.h"
#include "measurement/LevelStatistics.h"

namespace ostrel {

struct CueRecord {
    QUuid id; // new for each run, so a cue that runs twice has two records
    QString cueID; // QLab's unique ID
    QString number;
    QString name; // the cue's display name, never empty
    QString type;
    Date start; // when the tracker saw it start, not QLab's own idea of the time
    std::optional<Date> end; // absent while running
    QString meterSetting; // the meter setting text at the start
    LevelStatistics statistics;

    // What the level graph writes at the cue's start: its number, or its name where the cue has
    // no number.
    QString markerLabel() const { return number.isEmpty() ? name : number; }

    // Seconds from `start` to `end`, or to `at` while running.
    double duration(Date at) const;

    // The field names as keys, dates in the session files' ISO 8601 form, `end` left out while
    // running.
    QJsonObject toJson() const;
    // Nothing when a required key is missing or any value has the wrong form; `error` then
    // names the first problem.
    static std::optional<CueRecord> fromJson(const QJsonObject& object, QString* error = nullptr);

    bool operator==(const CueRecord&) const = default;
};

} // namespace ostrel
