#include "recording/Recording.h"

#include <QDir>
#include <QFileInfo>

#include "recording/DiskSessionFiles.h"
#include "sessions/RecordingFormat.h"
#include "sessions/SessionArchive.h"

namespace ostrel {

std::optional<Recording> Recording::read(const QString& folder)
{
    const DiskSessionFiles files;
    auto session
        = SessionArchive::load(QDir(folder).filePath(QStringLiteral("session.json")), files);
    if (!session) return std::nullopt;
    Recording recording {folder, std::move(*session)};
    recording.hasAudio = QFileInfo::exists(recording.audioPath());
    recording.hasMeasurements = QFileInfo::exists(recording.framesPath());
    // An unlistable folder lists nothing, so its size reads as 0.
    const auto entries = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo& entry : entries)
        recording.size += entry.size();
    return recording;
}

QString Recording::folderName() const
{
    return QFileInfo(folder).fileName();
}

QString Recording::audioPath() const
{
    return QDir(folder).filePath(QString::fromLatin1(RecordingFormat::audioFileName));
}

QString Recording::framesPath() const
{
    return QDir(folder).filePath(QString::fromLatin1(RecordingFormat::framesFileName));
}

} // namespace ostrel
