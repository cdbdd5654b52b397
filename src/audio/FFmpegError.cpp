#include "audio/FFmpegError.h"

#include <array>

extern "C" {
#include <libavutil/error.h>
}

namespace ostrel {

std::string ffmpegErrorText(int code)
{
    std::array<char, AV_ERROR_MAX_STRING_SIZE> buffer {};
    if (av_strerror(code, buffer.data(), buffer.size()) < 0) return "unknown FFmpeg error";
    return buffer.data();
}

QString ffmpegErrorMessage(int code)
{
    return QString::fromStdString(ffmpegErrorText(code));
}

} // namespace ostrel
