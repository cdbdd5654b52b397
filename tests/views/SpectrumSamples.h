#pragma once

// Intervals that carry a spectrum, for the spectrum views' tests: every band at one level, with
// one band standing out.
#include <optional>

#include "measurement/MeasurementInterval.h"
#include "support/SteadyInterval.h"

namespace ostrel::testsupport {

inline MeasurementInterval spectrumInterval(
    double bandLevel, std::optional<double> dominant = 1000.0, double level = 75.0)
{
    MeasurementInterval interval = intervalAt(level);
    Spectrum spectrum;
    spectrum.bandLevels.fill(bandLevel);
    spectrum.fineBandLevels.fill(bandLevel);
    // 1 kHz: third-octave band 17, fine band 136.
    spectrum.bandLevels[17] = bandLevel + 20.0;
    spectrum.fineBandLevels[136] = bandLevel + 20.0;
    spectrum.dominantFrequency = dominant;
    interval.spectrum = spectrum;
    return interval;
}

} // namespace ostrel::testsupport
