#include "measurement/SPLProcessor.h"

#include <cmath>

#include "measurement/SPLMath.h"

namespace ostrel {

namespace {
constexpr double clipThreshold = 0.999;
}

SPLProcessor::SPLProcessor(double sampleRate, FrequencyWeighting weighting,
                           TimeWeighting response, double calibrationOffset,
                           std::optional<MicrophoneCorrection> correction)
    : sampleRate_(sampleRate),
      weighting_(weighting),
      response_(response),
      calibrationOffset_(calibrationOffset),
      correction_(std::move(correction)),
      filter_(weighting, sampleRate),
      calibrationGain_(SPLMath::power(calibrationOffset)),
      fastAlpha_(SPLMath::timeWeightingCoefficient(timeConstant(TimeWeighting::fast), sampleRate)),
      slowAlpha_(SPLMath::timeWeightingCoefficient(timeConstant(TimeWeighting::slow), sampleRate))
{
    if (correction_) correctionFilter_.emplace(*correction_, sampleRate_);
}

void SPLProcessor::setWeighting(FrequencyWeighting weighting)
{
    if (weighting == weighting_) return;
    weighting_ = weighting;
    filter_ = WeightingFilter(weighting, sampleRate_);
}

void SPLProcessor::setCalibrationOffset(double offset) noexcept
{
    calibrationOffset_ = offset;
    calibrationGain_ = SPLMath::power(offset);
}

void SPLProcessor::setCorrection(std::optional<MicrophoneCorrection> correction)
{
    correction_ = std::move(correction);
    if (correction_)
        correctionFilter_.emplace(*correction_, sampleRate_);
    else
        correctionFilter_.reset();
}

double SPLProcessor::currentLevel() const noexcept
{
    return SPLMath::decibels(selectedDetector() * calibrationGain_);
}

void SPLProcessor::process(std::span<const float> samples)
{
    if (samples.empty()) return;
    if (correctionFilter_) {
        accumulate(samples, correctionFilter_->process(samples));
    } else {
        accumulate(samples, samples);
    }
}

void SPLProcessor::accumulate(std::span<const float> raw, std::span<const float> input) noexcept
{
    // Locals keep the loop in registers; the members are written back once per block.
    WeightingFilter filter = filter_;
    double fast = fastState_;
    double slow = slowState_;
    double peak = intervalPeak_;
    double maxState = intervalMaxState_;
    bool clipped = intervalClipped_;
    double rawSum = 0.0;
    double energySum = 0.0;
    const double fastAlpha = fastAlpha_;
    const double slowAlpha = slowAlpha_;
    const bool readsFast = response_ == TimeWeighting::fast;

    const std::size_t count = raw.size();
    for (std::size_t i = 0; i < count; ++i) {
        const double r = raw[i];
        // A NaN compares false and does not trip the clip test.
        if (std::fabs(r) >= clipThreshold) clipped = true;
        const double y = filter.process(static_cast<double>(input[i]));
        const double p = y * y;
        if (p > peak) peak = p;
        fast += fastAlpha * (p - fast);
        slow += slowAlpha * (p - slow);
        const double selected = readsFast ? fast : slow;
        if (selected > maxState) maxState = selected;
        rawSum += r * r;
        energySum += p;
    }

    filter_ = filter;
    fastState_ = fast;
    slowState_ = slow;
    intervalPeak_ = peak;
    intervalMaxState_ = maxState;
    intervalClipped_ = clipped;
    intervalRawEnergy_ += rawSum;
    intervalEnergy_ += energySum;
    intervalSamples_ += static_cast<std::int64_t>(count);
}

MeasurementInterval SPLProcessor::takeInterval() noexcept
{
    MeasurementInterval interval;
    interval.sampleCount = intervalSamples_;
    interval.sampleRate = sampleRate_;
    interval.energy = intervalEnergy_ * calibrationGain_;
    interval.peakPower = intervalPeak_ * calibrationGain_;
    interval.maxLevel = SPLMath::decibels(intervalMaxState_ * calibrationGain_);
    interval.level = currentLevel();
    interval.rawEnergy = intervalRawEnergy_;
    interval.clipped = intervalClipped_;

    intervalSamples_ = 0;
    intervalEnergy_ = 0.0;
    intervalRawEnergy_ = 0.0;
    intervalPeak_ = 0.0;
    intervalMaxState_ = 0.0;
    intervalClipped_ = false;
    return interval;
}

void SPLProcessor::reset() noexcept
{
    filter_.reset();
    if (correctionFilter_) correctionFilter_->reset();
    fastState_ = slowState_ = 0.0;
    intervalSamples_ = 0;
    intervalEnergy_ = intervalRawEnergy_ = intervalPeak_ = intervalMaxState_ = 0.0;
    intervalClipped_ = false;
}

} // namespace ostrel
