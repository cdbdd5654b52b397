#pragma once

// Opens a recorded show's "measurements.ostrel" in place.
#include <optional>

#include <QString>

#include "sessions/RecordingFrames.h"

namespace ostrel::RecordingFile {

// Maps the file; nothing when it can't be mapped or its header is not this program's.
std::optional<RecordingFrames> open(const QString& path);

} // namespace ostrel::RecordingFile
