#pragma once

// A tenth of a second at 48 kHz of a steady sound at `level` dB, loud enough to count as signal:
// what the central model's tests feed it in place of a microphone.
#include "measurement/MeasurementInterval.h"
#include "measurement/SPLMath.h"

namespace ostrel::testsupport {

inline MeasurementInterval steadyInterval(double level)
{
    MeasurementInterval value;
    value.sampleCount = 4800;
    value.sampleRate = 48000.0;
    value.energy = SPLMath::power(level) * 4800.0;
    value.peakPower = SPLMath::power(level + 3.0);
    value.maxLevel = level;
    value.level = level;
    value.rawEnergy = SPLMath::power(-20.0) * 4800.0;
    return value;
}

// A tenth of a second at `level` whose raw level `rawDBFS` decides whether it counts as signal,
// with a peak 3 dB and a maximum 1 dB above the level: what the view tests feed the meter.
inline MeasurementInterval intervalAt(double level, double rawDBFS = -20.0, bool clipped = false)
{
    MeasurementInterval value;
    value.sampleCount = 4800;
    value.sampleRate = 48000.0;
    value.energy = SPLMath::power(level) * 4800.0;
    value.peakPower = SPLMath::power(level + 3.0);
    value.maxLevel = level + 1.0;
    value.level = level;
    value.rawEnergy = SPLMath::power(rawDBFS) * 4800.0;
    value.clipped = clipped;
    return value;
}

} // namespace ostrel::testsupport
