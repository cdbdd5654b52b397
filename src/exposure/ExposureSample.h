#pragma once

// What one measuring interval adds to the exposure, whatever weighting the meter shows.
namespace ostrel {

struct ExposureSample {
    // A-weighted calibrated mean-square times seconds: the interval's sound energy.
    double energyTime = 0.0;
    double duration = 0.0; // seconds
    // C-weighted calibrated highest squared sample.
    double cPeakPower = 0.0;

    bool operator==(const ExposureSample&) const = default;
};

} // namespace ostrel
