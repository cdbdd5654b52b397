#pragma once

// Where a running Timecode cue has got to. QLab never broadcasts the position, so the cue list
// works it out from the start time and the cue's elapsed time.
#include <optional>

#include "common/Date.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabTimecodeSettings.h"
#include "qlab/Timecode.h"
#include "qlab/TimecodeRate.h"

namespace ostrel {

// `fallbackRate` stands in when QLab gave no rate or one it doesn't have. Nothing for a cue
// that isn't a Timecode cue or whose start time can't be read.
std::optional<QLabTimecodeSettings> timecodeSettings(const QLabCue& cue, TimecodeRate fallbackRate);

// A guide for the display, good to about a frame; nothing is locked to it.
std::optional<Timecode> currentTimecode(const QLabCue& cue, Date at, TimecodeRate fallbackRate);

} // namespace ostrel
