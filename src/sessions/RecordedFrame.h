#pragma once

// One measurement interval as a recording holds it: where it lies in the recorded audio and
// when it was measured, so replay can keep level, spectrum and sound together.
#include "measurement/MeasurementInterval.h"

namespace ostrel {

struct RecordedFrame {
    double audioTime = 0.0; // seconds of recorded audio at the end of the interval
    double wallTime = 0.0; // seconds since the session's start
    MeasurementInterval interval;

    bool operator==(const RecordedFrame&) const = default;
};

} // namespace ostrel
