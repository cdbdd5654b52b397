#pragma once

// The cue log and the level history as CSV text for a spreadsheet: one decimal for numbers,
// local times, CR LF line ends.
#include <optional>
#include <vector>

#include <QString>
#include <QTimeZone>

#include "common/Date.h"
#include "sessions/CueRecord.h"
#include "sessions/LevelLogEntry.h"

namespace ostrel::CSVExporter {

// A header row and one row per record, in the order given. A record without `end` lasts
// until `now`. Times are shown in `zone`.
QString cues(const std::vector<CueRecord>& records, Date now,
    const QTimeZone& zone = QTimeZone::systemTimeZone());
QString levels(
    const std::vector<LevelLogEntry>& entries, const QTimeZone& zone = QTimeZone::systemTimeZone());

// "%.1f" with a "." whatever the locale: -0.04 gives "-0.0".
QString level(double value);
// "2026-03-14 19:30:05": to the second, no zone mark.
QString timestamp(Date date, const QTimeZone& zone);
// Quoted, with inner quotes doubled, when the field holds a comma, a quote or a line break
// (LF, VT, FF, CR, NEL, LS or PS); otherwise as it is.
QString escape(const QString& field);

} // namespace ostrel::CSVExporter
