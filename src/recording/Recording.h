#pragma once

// One recorded show on disk: a folder under "Sessions" with a readable "session.json", and
// whatever else it holds of its sound and measurements. Equal only to a recording of the same
// folder.
#include <optional>

#include <QString>

#include "sessions/ShowSession.h"

namespace ostrel {

struct Recording {
    QString folder;
    ShowSession session;
    bool hasAudio = false;
    bool hasMeasurements = false;
    qint64 size = 0; // bytes of the folder's own files

    // Nothing when the folder has no readable "session.json": then it is no recording.
    static std::optional<Recording> read(const QString& folder);

    QString folderName() const;
    QString audioPath() const;
    QString framesPath() const;

    bool operator==(const Recording& other) const { return folder == other.folder; }
};

} // namespace ostrel
