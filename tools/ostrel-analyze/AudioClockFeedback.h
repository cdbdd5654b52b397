#pragma once

// The station's feedback detector run over a whole file. It is timed by the audio rather than the
// wall clock: a file is read many times faster than it plays, and the detector's sustain and
// release times are about what is heard.
#include <optional>

#include "common/Date.h"
#include "measurement/FeedbackDetector.h"
#include "measurement/MeasurementInterval.h"

namespace ostrel::analyze {

class AudioClockFeedback {
public:
    // The date of the file's first sample; any fixed date does, as the detector counts differences.
    static constexpr Date start {};

    // `endTime`: seconds of audio at the interval's end. The frequency of the warning in force
    // afterwards. An interval without a spectrum leaves the detector as it was, as the station
    // only hears about intervals that have one.
    std::optional<double> update(const MeasurementInterval& interval, double endTime);

    const FeedbackDetector& detector() const noexcept { return detector_; }

private:
    FeedbackDetector detector_;
};

} // namespace ostrel::analyze
