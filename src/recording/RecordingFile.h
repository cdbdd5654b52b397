#pragma once

// Opens a recorded show's "measurements.ostrel" in place.
#include <optional>

#include <QString>

#include "sessions/RecordingFrames.h"

namespace ostrel::RecordingFile {

struct Opened {
    std::optional<RecordingFrames> frames;
    // Without frames, why, in words for the user: a file that is not this program's gets the
    // corrupt-file text, one that can't be read the system's reason.
    QString error;
};

// Maps the file.
Opened open(const QString& path);

} // namespace ostrel::RecordingFile
