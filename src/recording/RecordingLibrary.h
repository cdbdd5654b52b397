#pragma once

// The recorded shows on this computer, newest first, for the Recordings window; and how much
// disk there is left to record on. Scans run in the background. Main thread only.
#include <optional>
#include <vector>

#include <QObject>
#include <QString>

#include "recording/Recording.h"
#include "sessions/RecordingFormat.h"

namespace ostrel {

class RecordingLibrary : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasLoaded READ hasLoaded NOTIFY hasLoadedChanged)

public:
    // Ten frames a second and 64 kbit/s of audio.
    static constexpr qint64 bytesPerHour
        = (10 * static_cast<qint64>(RecordingFormat::frameSize) + 8000) * 3600;

    // `sessionsFolder` is the station's "Sessions" folder unless told otherwise.
    explicit RecordingLibrary(QString sessionsFolder = QString(), QObject* parent = nullptr);

    const std::vector<Recording>& recordings() const { return recordings_; }
    bool hasLoaded() const { return hasLoaded_; }
    const QString& sessionsFolder() const { return sessionsFolder_; }

    // Scans in the background; the result lands on the main thread.
    void refresh();
    std::optional<Recording> recording(const QString& folderName) const;
    // To the desktop's bin. On success the recording leaves the list at once; on failure the
    // list stays and the reason is given.
    std::optional<QString> moveToTrash(const Recording& recording);
    // Bytes free for recording on the volume of the "Sessions" folder, or of its parent while
    // it doesn't exist yet.
    std::optional<qint64> availableSpace() const;

    // The recordings in `sessionsFolder`, newest first; a folder that can't be listed has none.
    static std::vector<Recording> scan(const QString& sessionsFolder);

signals:
    void recordingsChanged();
    void hasLoadedChanged();

private:
    void store(std::vector<Recording> recordings);

    QString sessionsFolder_;
    std::vector<Recording> recordings_;
    bool hasLoaded_ = false;
};

} // namespace ostrel
