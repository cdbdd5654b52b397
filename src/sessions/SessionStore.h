#pragma once

// The cue history and the show in progress: feeds the tracker with QLab's running cues and the
// measurement intervals, keeps a level log once a second, and hands a finished show to the
// archive. Main thread only.
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QString>

#include "common/Date.h"
#include "measurement/LevelStatistics.h"
#include "measurement/MeasurementInterval.h"
#include "qlab/QLabCue.h"
#include "sessions/CueRecord.h"
#include "sessions/CueTracker.h"
#include "sessions/SessionFiles.h"
#include "sessions/ShowSession.h"

namespace ostrel {

class SessionStore : public QObject {
    Q_OBJECT

public:
    // Finished shows are written into `files` under `archiveFolder`, the station's "Sessions"
    // folder unless told otherwise.
    explicit SessionStore(std::shared_ptr<SessionFiles> files, QString archiveFolder = QString(),
        QObject* parent = nullptr);

    void updateRunningCues(const std::vector<QLabCue>& cues, Date at);
    void ingest(const MeasurementInterval& interval, Date at);
    // Replaces a running session without saving it: callers end that one first.
    void start(const QString& name, Date at, const std::optional<QString>& recordingFolderName);
    // The finished show, also kept as `lastSession` and archived; nothing without a session.
    std::optional<ShowSession> end(Date at);
    // The show as it stands while it runs, else the last one ended.
    std::optional<ShowSession> sessionForExport(Date at) const;

    // Finished cues, newest first.
    const std::vector<CueRecord>& history() const { return history_; }
    // The session as it was at its start: for its name and start only.
    const std::optional<ShowSession>& activeSession() const { return activeSession_; }
    const std::optional<ShowSession>& lastSession() const { return lastSession_; }
    const CueTracker& tracker() const { return tracker_; }

    bool recordsLevelHistory() const { return recordsLevelHistory_; }
    void setRecordsLevelHistory(bool value);
    bool archivesSessions() const { return archivesSessions_; }
    void setArchivesSessions(bool value);
    const QString& meterSetting() const { return tracker_.meterSetting; }
    void setMeterSetting(const QString& value);
    const std::optional<QString>& microphoneCorrectionName() const { return correctionName_; }
    void setMicrophoneCorrectionName(const std::optional<QString>& value);
    const QString& archiveFolder() const { return archiveFolder_; }

    // Called once for each cue that starts, in order: the level graph marks it.
    std::function<void(const CueRecord&)> onCueStarted;

signals:
    void historyChanged();
    void activeSessionChanged();
    void lastSessionChanged();
    void recordsLevelHistoryChanged();
    void archivesSessionsChanged();
    void meterSettingChanged();
    void microphoneCorrectionNameChanged();

private:
    std::optional<ShowSession> currentSnapshot(Date at) const;

    std::shared_ptr<SessionFiles> files_;
    QString archiveFolder_;
    CueTracker tracker_;
    std::vector<CueRecord> history_;
    std::optional<ShowSession> activeSession_;
    std::optional<ShowSession> lastSession_;
    std::optional<ShowSession> liveSession_;
    LevelStatistics secondStatistics_;
    std::optional<Date> secondStart_;
    bool recordsLevelHistory_ = true;
    bool archivesSessions_ = true;
    std::optional<QString> correctionName_;
};

} // namespace ostrel
