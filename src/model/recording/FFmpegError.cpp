#include "model/recording/FFmpegError.h"

#include <array>

extern "C" {
#include <libavutil/error.h>
}

namespace ostrel {

QString ffmpegErrorText(int code)
{
    std::array<char, AV_ERROR_MAX_STRING_SIZE> buffer {};
    if (av_strerror(code, buffer.data(), buffer.size()) < 0) return QStringLiteral("unknown error");
    return QString::fromUtf8(buffer.data());
}

} // namespace ostrel
