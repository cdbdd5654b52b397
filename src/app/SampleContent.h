#pragma once

// A minute of a plausible show, fed through the central model like live intervals, so that a
// screenshot or a screen test shows every part of the meter filled. Deterministic.
#include <vector>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "sessions/CueRecord.h"
#include "station/AppModel.h"

namespace ostrel::SampleContent {

// The level of the last interval fed, which the readout then shows.
inline constexpr double lastLevel = 78.4;

// The cues that ran in the sample minute ending at `end`.
std::vector<CueRecord> cues(Date end);

// The sample minute's intervals, ten a second, oldest first.
std::vector<MeasurementInterval> intervals();

// Ingests 60 seconds of intervals ending at `end`, and a marker for each of `cues` labelled as a
// running cue's would be; QLab shows as connected to a workspace.
void feed(AppModel& model, Date end);

} // namespace ostrel::SampleContent
