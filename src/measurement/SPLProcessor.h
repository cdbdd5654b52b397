#pragma once

// Turns a stream of 32-bit float samples into sound level: correction, weighting, squaring, the
// Fast and Slow detectors sample by sample, and what one interval needs. Detectors and sums are
// held uncalibrated, so a calibration change takes effect at once without disturbing them.
#include <cstdint>
#include <optional>
#include <span>

#include "measurement/CorrectionFilter.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/MicrophoneCorrection.h"
#include "measurement/TimeWeighting.h"
#include "measurement/WeightingFilter.h"

namespace ostrel {

class SPLProcessor {
public:
    SPLProcessor(double sampleRate, FrequencyWeighting weighting, TimeWeighting response,
        double calibrationOffset, std::optional<MicrophoneCorrection> correction = std::nullopt);

    double sampleRate() const noexcept { return sampleRate_; }
    FrequencyWeighting weighting() const noexcept { return weighting_; }
    TimeWeighting response() const noexcept { return response_; }
    double calibrationOffset() const noexcept { return calibrationOffset_; }
    double calibrationGain() const noexcept { return calibrationGain_; }
    const std::optional<MicrophoneCorrection>& correction() const noexcept { return correction_; }
    const WeightingFilter& filter() const noexcept { return filter_; }
    bool hasCorrectionFilter() const noexcept { return correctionFilter_.has_value(); }
    double fastAlpha() const noexcept { return fastAlpha_; }
    double slowAlpha() const noexcept { return slowAlpha_; }

    // A new filter only for a real change; the detectors stay.
    void setWeighting(FrequencyWeighting weighting);
    void setResponse(TimeWeighting response) noexcept { response_ = response; }
    void setCalibrationOffset(double offset) noexcept;
    void setCorrection(std::optional<MicrophoneCorrection> correction);

    std::int64_t pendingSampleCount() const noexcept { return intervalSamples_; }
    // Samples of the open interval that were NaN or infinite and were measured as silence.
    std::int64_t pendingNonFiniteCount() const noexcept { return intervalNonFinite_; }
    double currentLevel() const noexcept;

    // Not noexcept: the correction filter grows for a block larger than any before.
    void process(std::span<const float> samples);
    MeasurementInterval takeInterval() noexcept;
    void reset() noexcept;

private:
    void accumulate(std::span<const float> raw, std::span<const float> input) noexcept;
    // One pass of meter and exposure under the meter's weighting.
    template <FrequencyWeighting Meter>
    void accumulateAs(
        std::span<const float> raw, std::span<const float> input, bool readsFast) noexcept;
    double selectedDetector() const noexcept
    {
        return response_ == TimeWeighting::fast ? fastState_ : slowState_;
    }

    double sampleRate_;
    FrequencyWeighting weighting_;
    TimeWeighting response_;
    double calibrationOffset_;
    std::optional<MicrophoneCorrection> correction_;
    WeightingFilter filter_;
    std::optional<CorrectionFilter> correctionFilter_;
    WeightingFilter exposureA_;
    WeightingFilter exposureC_;
    double calibrationGain_;
    double fastAlpha_;
    double slowAlpha_;
    double fastState_ = 0.0;
    double slowState_ = 0.0;
    std::int64_t intervalSamples_ = 0;
    std::int64_t intervalNonFinite_ = 0;
    double intervalEnergy_ = 0.0;
    double intervalRawEnergy_ = 0.0;
    double intervalPeak_ = 0.0;
    double intervalMaxState_ = 0.0;
    bool intervalClipped_ = false;
    double intervalExposureEnergy_ = 0.0;
    double intervalExposurePeak_ = 0.0;
};

} // namespace ostrel
