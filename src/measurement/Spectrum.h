#pragma once

// What the analyser says about one interval: third-octave and fine band levels, the dominant
// frequency and the strongest peak. A band level of exactly -200 means no measurement.
#include <optional>
#include <vector>

namespace ostrel {

struct SpectralPeak {
    double frequency = 0.0;     // Hz, interpolated
    double level = 0.0;         // dB, calibrated bin level
    double prominence = 0.0;    // dB above the surrounding bins' mean power
    double harmonicLevel = 0.0; // dB, strongest 2nd or 3rd harmonic relative to the peak
    bool operator==(const SpectralPeak&) const = default;
};

struct Spectrum {
    std::vector<double> bandLevels; // 31 third-octave levels
    std::optional<double> dominantFrequency;
    std::optional<SpectralPeak> peak;
    std::vector<double> fineBandLevels; // 240 levels on the 1/24-octave grid
    bool operator==(const Spectrum&) const = default;
};

} // namespace ostrel
