#pragma once

// FFmpeg's words for one of its error codes, for messages and logs.
#include <string>

namespace ostrel {

std::string ffmpegErrorText(int code);

} // namespace ostrel
