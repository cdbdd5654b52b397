#pragma once

// One second of a show's level history: the Leq and Max of that second, as a session keeps and
// exports them.
#include <optional>

#include <QJsonObject>
#include <QString>

#include "common/Date.h"

namespace ostrel {

struct LevelLogEntry {
    Date time; // the start of the second
    double leq = 0.0; // dB
    double maxLevel = 0.0; // dB

    // Keys time, leq and maxLevel; the time in the session files' ISO 8601 form.
    QJsonObject toJson() const;
    static std::optional<LevelLogEntry> fromJson(
        const QJsonObject& object, QString* error = nullptr);

    bool operator==(const LevelLogEntry&) const = default;
};

} // namespace ostrel
