#include "station/ShowSessions.h"

#include <QDateTime>
#include <QRegularExpression>

#include "common/IsoDate.h"
#include "recording/RecordingLog.h"
#include "sessions/CSVExporter.h"
#include "sessions/SessionArchive.h"

namespace ostrel {

ShowSessions::ShowSessions(const SessionSettings& settings, const MeasurementSettings& measurement,
    std::shared_ptr<MeasurementPipeline> pipeline, std::shared_ptr<SessionFiles> files,
    QString sessionsFolder, QObject* parent)
    : QObject(parent),
      settings_(settings),
      measurement_(measurement),
      pipeline_(std::move(pipeline)),
      files_(files),
      sessionsFolder_(sessionsFolder.isEmpty() ? SessionArchive::folder() : sessionsFolder),
      store_(std::move(files), sessionsFolder_),
      library_(sessionsFolder_)
{
}

ShowSessions::~ShowSessions()
{
    // Never leave the audio thread feeding a recorder that is going away.
    if (recorder_) pipeline_->setRecorder(nullptr);
}

void ShowSessions::start()
{
    applyMeasurementSettings();
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &ShowSessions::applySettings);
    connect(&measurement_, &SettingsGroup::changed, this, &ShowSessions::applyMeasurementSettings);
}

void ShowSessions::ingest(const MeasurementInterval& interval, Date at)
{
    store_.ingest(interval, at);
}

void ShowSessions::updateRunningCues(const std::vector<QLabCue>& cues, Date at)
{
    store_.updateRunningCues(cues, at);
}

void ShowSessions::setKeepsFiles(bool keeps)
{
    keepsFiles_ = keeps;
    store_.setArchivesSessions(keeps);
}

void ShowSessions::startSession(const QString& name, Date now, const QLocale& locale)
{
    const QString trimmed = name.trimmed();
    const auto folder = startRecording(now);
    store_.start(trimmed.isEmpty() ? defaultSessionName(now, locale) : trimmed, now, folder);
    // A show lost to a crash or a power cut still has its session file beside its recording,
    // and so stays in the library.
    if (folder && store_.activeSession())
        SessionArchive::save(*store_.activeSession(), *files_, sessionsFolder_);
}

std::optional<QString> ShowSessions::startRecording(Date date)
{
    if (!keepsFiles_ || !settings_.recordsSessions()) return std::nullopt;
    // Named after the start, in UTC: safe as a file name, and sorts by time.
    const QString name = SessionArchive::baseName(date);
    auto created = SessionRecorder::create(
        SessionArchive::recordingFolder(name, sessionsFolder_), date, /*recordsAudio=*/true);
    if (const auto* reason = std::get_if<QString>(&created)) {
        qCWarning(ostrelRecording).noquote() << "No recording for this session:" << *reason;
        emit failed(QString::fromUtf8(folderFailureMessage));
        return std::nullopt;
    }
    recorder_ = std::get<std::shared_ptr<SessionRecorder>>(std::move(created));
    pipeline_->setRecorder(recorder_);
    return name;
}

std::optional<ShowSession> ShowSessions::finishSession(Date now)
{
    if (!store_.activeSession()) return std::nullopt;
    pipeline_->setRecorder(nullptr);
    std::optional<SessionRecorder::Outcome> outcome;
    if (recorder_) {
        // The one wait of the main thread on another: the files must be closed before the
        // station may quit and before the library looks at the folder.
        outcome = recorder_->finish();
        recorder_.reset();
    }
    auto session = store_.end(now);
    setRecordingWarning(warningFor(outcome));
    library_.refresh();
    return session;
}

bool ShowSessions::exportCSV(const ShowSession& session, bool levels, const QString& path, Date now)
{
    const QString text
        = levels ? CSVExporter::levels(session.levels) : CSVExporter::cues(session.cues, now);
    if (files_->write(path, text.toUtf8())) return true;
    emit failed(QString::fromUtf8(exportFailureMessage));
    return false;
}

std::optional<QString> ShowSessions::warningFor(
    const std::optional<SessionRecorder::Outcome>& outcome)
{
    if (!outcome
        || !(outcome->audioFailed || outcome->measurementsFailed || outcome->exposureFailed))
        return std::nullopt;
    return QString::fromUtf8(recordingFailureWarning);
}

bool ShowSessions::canExport() const
{
    return store_.activeSession().has_value() || store_.lastSession().has_value();
}

void ShowSessions::setRecordingWarning(std::optional<QString> warning)
{
    if (warning == recordingWarning_) return;
    recordingWarning_ = std::move(warning);
    emit recordingWarningChanged();
}

QString ShowSessions::defaultSessionName(Date date, const QLocale& locale)
{
    // The locale's long date without the weekday and with the month abbreviated: "Mar 14, 2026",
    // "14 mars 2026". Qt offers no abbreviated style of its own.
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(QRegularExpression(QStringLiteral("d{4}[,.]?\\s*")));
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    const QDate day = IsoDate::toQDateTime(date).toLocalTime().date();
    return QStringLiteral("Show \u2013 ") + locale.toString(day, format.trimmed());
}

QString ShowSessions::proposedExportName(const ShowSession& session, bool levels)
{
    return session.name + QStringLiteral(" \u2013 ")
        + (levels ? QStringLiteral("Levels") : QStringLiteral("Cues")) + QStringLiteral(".csv");
}

void ShowSessions::applySettings()
{
    store_.setRecordsLevelHistory(settings_.recordsLevelHistory());
}

void ShowSessions::applyMeasurementSettings()
{
    store_.setMeterSetting(measurement_.meterSetting());
    const auto& correction = measurement_.microphoneCorrection();
    store_.setMicrophoneCorrectionName(
        correction ? std::optional(QString::fromStdString(correction->name())) : std::nullopt);
}

void ShowSessions::recordDemoAudio(
    std::span<const float> samples, double sampleRate, const MeasurementInterval& interval, Date at)
{
    if (recorder_) recorder_->append(samples, sampleRate, interval, at);
}

} // namespace ostrel
