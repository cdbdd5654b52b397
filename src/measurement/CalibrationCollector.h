#pragma once

// Measures the raw input while the microphone sits in an acoustic calibrator, and judges whether
// the result can be trusted. Works on raw energy, so neither the weighting, the correction nor
// the current offset can influence a new calibration.
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "measurement/MeasurementInterval.h"

namespace ostrel {

struct CalibrationResult {
    enum class Kind { success, noSignal, unstable, overload };
    Kind kind = Kind::noSignal;
    double offset = 0.0; // success only
    double measuredDBFS = 0.0; // success only

    static CalibrationResult success(double offset, double measuredDBFS)
    {
        return {Kind::success, offset, measuredDBFS};
    }
    static CalibrationResult failure(Kind kind) { return {kind, 0.0, 0.0}; }
    // Absent for success.
    std::optional<std::string_view> failureMessage() const;

    bool operator==(const CalibrationResult&) const = default;
};

class CalibrationCollector {
public:
    double settleTime = 0.5; // seconds ignored at the start
    double minimumLevelDBFS = -80.0; // a quieter input is no calibrator
    double maximumSpread = 2.0; // dB allowed between short-term levels

    void add(const MeasurementInterval& interval);
    CalibrationResult result(double referenceLevel) const;
    double measuredDuration() const;

    double elapsed() const { return elapsed_; }
    std::int64_t sampleCount() const { return sampleCount_; }
    const std::vector<double>& shortTermLevels() const { return shortTermLevels_; }

private:
    double elapsed_ = 0.0;
    double rawEnergy_ = 0.0;
    std::int64_t sampleCount_ = 0;
    std::vector<double> shortTermLevels_;
    bool clipped_ = false;
};

} // namespace ostrel
