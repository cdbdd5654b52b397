#pragma once

// What the analyser says about one interval: third-octave and fine band levels, the dominant
// frequency and the strongest peak. A band level of exactly -200 means no measurement. Fixed-size
// arrays, so that a spectrum is made on the audio thread without allocating.
#include <array>
#include <optional>

#include "measurement/SpectrumBand.h"

namespace ostrel {

struct SpectralPeak {
    double frequency = 0.0; // Hz, interpolated
    double level = 0.0; // dB, calibrated bin level
    double prominence = 0.0; // dB above the surrounding bins' mean power
    double harmonicLevel = 0.0; // dB, strongest 2nd or 3rd harmonic relative to the peak
    bool operator==(const SpectralPeak&) const = default;
};

struct Spectrum {
    std::array<double, SpectrumBand::thirdOctaveCount> bandLevels {};
    std::optional<double> dominantFrequency;
    std::optional<SpectralPeak> peak;
    std::array<double, SpectrumBand::fineCount> fineBandLevels {};

    // 1000 x 10^((index - 17)/10): the exact centre of third-octave band `index`.
    static double exactCenter(int index) noexcept;

    bool operator==(const Spectrum&) const = default;
};

} // namespace ostrel
