#pragma once

// The shows of this station: owns the session store, the recorder of the running show and the
// library of recorded ones. Opens and closes a session with its recording, keeps the store told
// of the meter setting, the correction and what a show keeps, and exports a show as CSV. A
// session always runs, with or without a recording, and ending one leaves the archive and the
// library in step. Main thread only.
#include <memory>
#include <optional>
#include <vector>

#include <QLocale>
#include <QObject>
#include <QString>

#include "measurement/MeasurementPipeline.h"
#include "measurement/MeasurementSettings.h"
#include "qlab/QLabCue.h"
#include "recording/RecordingLibrary.h"
#include "recording/SessionRecorder.h"
#include "sessions/SessionFiles.h"
#include "sessions/SessionSettings.h"
#include "sessions/SessionStore.h"

namespace ostrel {

class ShowSessions : public QObject {
    Q_OBJECT

public:
    static constexpr const char* folderFailureMessage
        = "The session can't be recorded because its folder couldn't be created. Cues and levels "
          "are still being logged.";
    static constexpr const char* exportFailureMessage
        = "The file couldn't be saved. Check that you have permission to save in that location.";
    static constexpr const char* recordingFailureWarning
        = "Part of the recording couldn't be saved. The disk may be full.";

    // Shows are archived in `sessionsFolder` (the station's "Sessions" folder unless told
    // otherwise) through `files`; the recorder is attached to `pipeline`.
    ShowSessions(const SessionSettings& settings, const MeasurementSettings& measurement,
        std::shared_ptr<MeasurementPipeline> pipeline, std::shared_ptr<SessionFiles> files,
        QString sessionsFolder = QString(), QObject* parent = nullptr);

    ~ShowSessions() override;

    const QString& sessionsFolder() const { return sessionsFolder_; }

    // Applies the settings and follows them from then on.
    void start();
    void ingest(const MeasurementInterval& interval, Date at);
    void updateRunningCues(const std::vector<QLabCue>& cues, Date at);

    // A test host's station records and archives nothing.
    void setKeepsFiles(bool keeps);

    // Opens a session named `name` (trimmed; empty gives the default name) at `now`, recording
    // it when the settings say so. A recording folder that can't be made costs only the
    // recording.
    void startSession(const QString& name, Date now, const QLocale& locale = QLocale());
    // The one road by which a session ends: detaches and finishes the recorder, stamps and
    // archives the session, refreshes the library. Nothing without a running session.
    std::optional<ShowSession> finishSession(Date now);
    // Makes the recording folder for a session starting at `date` and attaches its recorder;
    // nothing when the station records nothing or the folder can't be made.
    std::optional<QString> startRecording(Date date);
    // Writes a show's cues (or levels) as CSV to `path`, whole or not at all.
    bool exportCSV(const ShowSession& session, bool levels, const QString& path, Date now);

    bool canExport() const;
    const std::optional<QString>& recordingWarning() const { return recordingWarning_; }
    bool isRecording() const { return recorder_ != nullptr; }
    // The running show's recorder, or none.
    const std::shared_ptr<SessionRecorder>& recorder() const { return recorder_; }
    // A demo session's synthetic sound, handed to the recorder as the pipeline hands real sound.
    void recordDemoAudio(std::span<const float> samples, double sampleRate,
        const MeasurementInterval& interval, Date at);

    SessionStore& store() { return store_; }
    const SessionStore& store() const { return store_; }
    RecordingLibrary& library() { return library_; }

    // "Show – " and the date in the locale's abbreviated style, without a time.
    static QString defaultSessionName(Date date, const QLocale& locale = QLocale());
    // The summary's warning after a recording with this outcome; nothing without a recorder.
    static std::optional<QString> warningFor(
        const std::optional<SessionRecorder::Outcome>& outcome);
    // "Opening Night – Cues.csv"
    static QString proposedExportName(const ShowSession& session, bool levels);

signals:
    void recordingWarningChanged();
    // A message for the alert: the session goes on.
    void failed(const QString& message);

private:
    void applySettings();
    void applyMeasurementSettings();
    void setRecordingWarning(std::optional<QString> warning);

    const SessionSettings& settings_;
    const MeasurementSettings& measurement_;
    std::shared_ptr<MeasurementPipeline> pipeline_;
    std::shared_ptr<SessionFiles> files_;
    QString sessionsFolder_;
    SessionStore store_;
    RecordingLibrary library_;
    std::shared_ptr<SessionRecorder> recorder_;
    std::optional<QString> recordingWarning_;
    bool keepsFiles_ = true;
    bool isFollowing_ = false;
};

} // namespace ostrel
