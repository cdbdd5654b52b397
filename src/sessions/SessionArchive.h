#pragma once

// Where finished shows are kept on disk and how their files are written and read back: one JSON
// file per session, or "session.json" inside the folder of a recorded one.
#include <optional>

#include <QByteArray>
#include <QString>

#include "common/Date.h"
#include "sessions/SessionFiles.h"
#include "sessions/ShowSession.h"

namespace ostrel::SessionArchive {

// The folder "Sessions" in the application's data folder.
QString folder();
// The date in UTC to the second, with "-" for ":", e.g. "2026-03-14T19-30-05".
QString baseName(Date date);
// `root` + "/" + `name`; the folder of a session with recording.
QString recordingFolder(const QString& name, const QString& root = folder());

// "2026-03-14T19:30:05.250Z": UTC with milliseconds, the form of every date in session files.
QString encodeDate(Date date);
// That form, or the same without fractional seconds. Anything else is nothing, with `error`
// set to "Not an ISO 8601 date: " and the text.
std::optional<Date> decodeDate(const QString& text, QString* error = nullptr);

// Compact JSON.
QByteArray encode(const ShowSession& session);
std::optional<ShowSession> decode(const QByteArray& json, QString* error = nullptr);

// Where a session is kept: "session.json" in its recording folder, or its base name + ".json"
// in `root`.
QString path(const ShowSession& session, const QString& root = folder());
// Writes the session whole into `files` at its path; `root` is made when missing, a recording
// folder never is. Failures are swallowed by the caller: the session stays in memory as the last
// session, so the return value only tells tests what happened.
bool save(const ShowSession& session, SessionFiles& files, const QString& root = folder());
// Nothing when the file can't be read or decoded.
std::optional<ShowSession> load(const QString& path, const SessionFiles& files);

} // namespace ostrel::SessionArchive
