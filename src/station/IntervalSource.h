#pragma once

// Where the station's own measurement intervals come from: the live input, and later the demo
// simulator or a replay. The central model takes whichever runs through this one face.
#include <functional>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/MeasurementSettings.h"

namespace ostrel {

class IntervalSource {
public:
    using Delivery = std::function<void(const MeasurementInterval& interval, Date at)>;

    virtual ~IntervalSource() = default;

    virtual void start() = 0;
    virtual void stop() = 0;
    // The weighting, response, calibration and correction to measure with.
    virtual void configure(const MeasurementSettings& settings) = 0;

    // Every finished interval, on the main thread, with the date it was taken.
    Delivery onInterval;
};

} // namespace ostrel
