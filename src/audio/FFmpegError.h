#pragma once

// FFmpeg's words for one of its error codes, for messages and logs.
#include <string>

#include <QString>

namespace ostrel {

std::string ffmpegErrorText(int code);
// The same, for Qt's messages.
QString ffmpegErrorMessage(int code);

} // namespace ostrel
