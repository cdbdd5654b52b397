#pragma once

// Finds a start time in the name QLab generates for an unnamed Timecode cue, the only place
// QLab 5.4 shares it.
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

// The first "H:MM:SS:FF" or "HH:MM:SS;FF" anywhere in `text`.
std::optional<std::string> timecodeText(std::string_view text);

} // namespace ostrel
