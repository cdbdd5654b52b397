#pragma once

// Where the pipeline hands each block and its finished interval when a session records. The
// implementation queues the call on its own serial worker and returns at once: it runs on the
// audio thread, outside the pipeline's lock, and disk writes must never stall the tap.
#include <optional>
#include <vector>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"

namespace ostrel {

class PipelineRecorder {
public:
    virtual ~PipelineRecorder() = default;
    virtual void enqueueAppend(std::vector<float> samples, double sampleRate,
                               std::optional<MeasurementInterval> interval, Date at) = 0;
};

} // namespace ostrel
