#include "qlab/QLabCueTimecode.h"

namespace ostrel {

std::optional<QLabTimecodeSettings> timecodeSettings(const QLabCue& cue, TimecodeRate fallbackRate)
{
    const TimecodeRate rate = cue.reportedTimecodeRate().value_or(fallbackRate);
    if (!cue.isTimecodeCue() || !cue.timecodeStart) return std::nullopt;
    const auto start = Timecode::fromQLabString(cue.timecodeStart->toStdString(), rate);
    if (!start) return std::nullopt;
    return QLabTimecodeSettings {*start, cue.timecodeOutputType};
}

std::optional<Timecode> currentTimecode(const QLabCue& cue, Date at, TimecodeRate fallbackRate)
{
    const auto settings = timecodeSettings(cue, fallbackRate);
    if (!settings) return std::nullopt;
    return settings->start.advanced(cue.elapsed(at));
}

} // namespace ostrel
