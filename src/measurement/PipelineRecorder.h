#pragma once

// Where the pipeline hands each block and its finished interval when a session records. The
// implementation copies the block into its own queue and returns at once: it runs on the audio
// thread, under the pipeline's lock, so neither disk writes nor allocation may happen in it.
#include <optional>
#include <span>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"

namespace ostrel {

class PipelineRecorder {
public:
    virtual ~PipelineRecorder() = default;
    // `samples` are valid only during the call. `interval` is the one this block finished.
    virtual void append(std::span<const float> samples, double sampleRate,
        const std::optional<MeasurementInterval>& interval, Date at)
        = 0;
};

} // namespace ostrel
