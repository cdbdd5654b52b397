#pragma once

// FFmpeg's words for one of its error codes, for the recording log.
#include <QString>

namespace ostrel {

QString ffmpegErrorText(int code);

} // namespace ostrel
