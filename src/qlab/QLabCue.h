#pragma once

// A cue that QLab is running or pausing, as the cue list, the cue log and the crew's mirror show
// it: what QLab said about it, and when this station saw and sampled it.
#include <cstdint>
#include <optional>

#include <QJsonObject>
#include <QString>

#include "common/Date.h"
#include "qlab/TimecodeRate.h"

namespace ostrel {

struct QLabCue {
    QString id; // QLab's unique ID, the cue's identity
    QString number;
    QString name;
    QString type; // QLab's cue type name, such as "Group"
    bool isPaused = false;
    std::optional<double> actionElapsed; // seconds, as read at `sampledAt`
    std::optional<double> duration; // seconds
    std::optional<Date> sampledAt;
    Date startedAt; // when this station first saw it running
    std::optional<QString> parentID;
    std::optional<QString> timecodeStart; // as QLab reports it
    std::optional<std::int64_t> timecodeRateIndex;
    std::optional<std::int64_t> timecodeOutputType; // 0 MTC, 1 LTC

    bool isGroup() const { return type == QLatin1String("Group"); }
    bool isTimecodeCue() const;
    // Nothing without an index, or for one outside QLab's eight rates.
    std::optional<TimecodeRate> reportedTimecodeRate() const;
    QString displayName() const;

    // The last sample carried on by wall time, frozen while paused; without a sample, the time
    // since the cue was first seen.
    double elapsed(Date at) const;
    // Nothing unless QLab gave a duration above zero.
    std::optional<double> remaining(Date at) const;
    // A fresh list entry keeps what the polls learned about the same cue.
    void adoptTiming(const QLabCue& previous);

    // JSON with the field names as keys, dates as seconds since 2001 (the crew's form); absent
    // fields are left out. Nothing when a required key is missing or a value has the wrong type.
    QJsonObject toJson() const;
    static std::optional<QLabCue> fromJson(const QJsonObject& object);

    bool operator==(const QLabCue&) const = default;
};

} // namespace ostrel
