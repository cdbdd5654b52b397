#pragma once

// One interval's exposure as a recording keeps it: where it lies on the show's audio clock,
// what it adds, and the profile in force when it was measured, so that a replay shows the strip
// as it was even across a change of profile.
#include "exposure/ExposureProfile.h"
#include "exposure/ExposureSample.h"

namespace ostrel {

struct ExposureFrame {
    double audioTime = 0.0; // seconds from the start of the recording to the interval's end
    ExposureSample sample;
    ExposureProfile profile;

    bool operator==(const ExposureFrame&) const = default;
};

} // namespace ostrel
