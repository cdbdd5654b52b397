#include "recording/RecordingLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QStorageInfo>
#include <QThreadPool>
#include <algorithm>

#include "sessions/SessionArchive.h"

namespace ostrel {

RecordingLibrary::RecordingLibrary(QString sessionsFolder, QObject* parent)
    : QObject(parent),
      sessionsFolder_(
          sessionsFolder.isEmpty() ? SessionArchive::folder() : std::move(sessionsFolder))
{
}

std::vector<Recording> RecordingLibrary::scan(const QString& sessionsFolder)
{
    std::vector<Recording> found;
    // Sessions without recording are files beside the folders, so they are not listed.
    const auto entries
        = QDir(sessionsFolder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    for (const QFileInfo& entry : entries) {
        if (auto recording = Recording::read(entry.absoluteFilePath()))
            found.push_back(std::move(*recording));
    }
    std::stable_sort(found.begin(), found.end(),
        [](const Recording& a, const Recording& b) { return a.session.start > b.session.start; });
    return found;
}

void RecordingLibrary::refresh()
{
    const QString folder = sessionsFolder_;
    QPointer<RecordingLibrary> library(this);
    // Touches nothing shared: the list reaches the library as a queued call on its own thread.
    QThreadPool::globalInstance()->start([folder, library] {
        auto found = scan(folder);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [library, found = std::move(found)]() mutable {
                if (library) library->store(std::move(found));
            },
            Qt::QueuedConnection);
    });
}

void RecordingLibrary::store(std::vector<Recording> recordings)
{
    recordings_ = std::move(recordings);
    emit recordingsChanged();
    if (!hasLoaded_) {
        hasLoaded_ = true;
        emit hasLoadedChanged();
    }
}

std::optional<Recording> RecordingLibrary::recording(const QString& folderName) const
{
    for (const Recording& recording : recordings_)
        if (recording.folderName() == folderName) return recording;
    return std::nullopt;
}

std::optional<QString> RecordingLibrary::moveToTrash(const Recording& recording)
{
    QFile folder(recording.folder);
    if (!folder.moveToTrash()) return folder.errorString();
    const auto gone = std::remove(recordings_.begin(), recordings_.end(), recording);
    if (gone != recordings_.end()) {
        recordings_.erase(gone, recordings_.end());
        emit recordingsChanged();
    }
    return std::nullopt;
}

std::optional<qint64> RecordingLibrary::availableSpace() const
{
    // Before the first show the folder isn't there yet: ask the volume it will be on.
    QString where = sessionsFolder_;
    while (!QFileInfo(where).isDir() && QFileInfo(where).absolutePath() != where)
        where = QFileInfo(where).absolutePath();
    const QStorageInfo volume(where);
    if (!volume.isValid() || !volume.isReady()) return std::nullopt;
    return volume.bytesAvailable();
}

} // namespace ostrel
