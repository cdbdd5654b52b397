#include "ostrel-analyze/ShowRecording.h"

#include <QDir>
#include <QFileInfo>

#include "recording/DiskSessionFiles.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"
#include "sessions/SessionArchive.h"

namespace ostrel::analyze {

std::variant<std::unique_ptr<ShowRecording>, std::string> ShowRecording::open(
    const std::string& folder, const std::string& name, const std::string& meterSetting, Date start)
{
    // Cleaned, so that "show/" and "./show" name the folder "show".
    const QFileInfo target(
        QDir::cleanPath(QFileInfo(QString::fromStdString(folder)).absoluteFilePath()));
    const QString path = target.absoluteFilePath();
    const QDir existing(path);
    // Never over a show already there: a recording is the one copy of a performance.
    for (const char* file :
        {RecordingFormat::framesFileName, RecordingFormat::audioFileName, "session.json"}) {
        if (existing.exists(QString::fromLatin1(file)))
            return "\"" + folder + "\" already holds a recording";
    }
    if (target.exists() && !target.isDir()) return "\"" + folder + "\" is not a folder";

    auto created = SessionRecorder::create(path, start, true);
    if (const auto* reason = std::get_if<QString>(&created))
        return "cannot record into \"" + folder + "\": " + reason->toStdString();

    // The archive writes "session.json" into the folder named after the recording.
    auto store = std::make_unique<SessionStore>(
        std::make_shared<DiskSessionFiles>(), target.absolutePath());
    store->setMeterSetting(QString::fromStdString(meterSetting));
    store->start(QString::fromStdString(name), start, target.fileName());
    return std::unique_ptr<ShowRecording>(new ShowRecording(
        std::get<std::shared_ptr<SessionRecorder>>(created), std::move(store), start));
}

ShowRecording::ShowRecording(
    std::shared_ptr<SessionRecorder> recorder, std::unique_ptr<SessionStore> store, Date start)
    : recorder_(std::move(recorder)), store_(std::move(store)), start_(start)
{
}

void ShowRecording::add(const MeasurementInterval& interval, double audioSeconds)
{
    store_->ingest(interval, dateAt(audioSeconds));
}

std::optional<std::string> ShowRecording::finish(double audioSeconds)
{
    const auto outcome = recorder_->finish();
    const auto session = store_->end(dateAt(audioSeconds));
    const QString sessionFile = QDir(
        SessionArchive::recordingFolder(*session->recordingFolderName, store_->archiveFolder()))
                                    .filePath(QStringLiteral("session.json"));
    if (outcome.audioFailed) return std::string("the audio could not be written in full");
    if (outcome.measurementsFailed)
        return std::string("the measurements could not be written in full");
    if (!QFileInfo::exists(sessionFile))
        return std::string("the session file could not be written");
    return std::nullopt;
}

} // namespace ostrel::analyze
