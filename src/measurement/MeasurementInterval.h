#pragma once

// What the microphone says for about a tenth of a second; the unit in which the rest of the
// system sees the measurement. Crosses from the audio thread to the main thread by value.
#include <cstdint>
#include <optional>

#include "measurement/SPLMath.h"
#include "measurement/Spectrum.h"

namespace ostrel {

struct MeasurementInterval {
    std::int64_t sampleCount = 0;
    double sampleRate = 48000.0;
    double energy = 0.0; // calibrated sum of squared weighted samples
    double peakPower = 0.0; // calibrated highest squared weighted sample
    double maxLevel = SPLMath::floorDecibels; // dB, highest detector value
    double level = SPLMath::floorDecibels; // dB, detector when the interval closed
    double rawEnergy = 0.0; // sum of squared raw samples: no weighting, correction or calibration
    bool clipped = false;
    std::optional<Spectrum> spectrum;
    // A-weighted calibrated energy and C-weighted calibrated highest squared sample, whatever
    // the meter's weighting: what exposure to a venue's limit is measured by.
    double exposureEnergy = 0.0;
    double exposurePeakPower = 0.0;

    double duration() const noexcept { return static_cast<double>(sampleCount) / sampleRate; }
    double leq() const noexcept
    {
        return SPLMath::decibels(energy / static_cast<double>(sampleCount));
    }
    double peakLevel() const noexcept { return SPLMath::decibels(peakPower); }
    double rawLevelDBFS() const noexcept
    {
        return SPLMath::decibels(
            rawEnergy / static_cast<double>(sampleCount > 1 ? sampleCount : 1));
    }

    bool operator==(const MeasurementInterval&) const = default;
};

} // namespace ostrel
