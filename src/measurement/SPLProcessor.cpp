#include "measurement/SPLProcessor.h"

#include <cmath>

#include "measurement/FiniteSamples.h"
#include "measurement/SPLMath.h"

namespace ostrel {

namespace {
constexpr double clipThreshold = 0.999;
}

SPLProcessor::SPLProcessor(double sampleRate, FrequencyWeighting weighting, TimeWeighting response,
    double calibrationOffset, std::optional<MicrophoneCorrection> correction)
    : sampleRate_(sampleRate),
      weighting_(weighting),
      response_(response),
      calibrationOffset_(calibrationOffset),
      correction_(std::move(correction)),
      filter_(weighting, sampleRate),
      exposureA_(FrequencyWeighting::a, sampleRate),
      exposureC_(FrequencyWeighting::c, sampleRate),
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
    // The exposure filter that the meter's stood in for starts afresh, as the meter's does.
    exposureA_.reset();
    exposureC_.reset();
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

namespace {

// The per-sample loop, with every coefficient and state word in a local so that the compiler
// keeps the whole chain in registers. A and C weighting share their outer sections (the 20.6 Hz
// high pass and the 12.2 kHz low pass) and A adds one middle section, so one pass computes the
// meter's weighting and the exposure's A energy and C peak: under A the C signal is tapped before
// the middle section, under C the A signal is that section applied to it, and under Z the
// exposure runs the three sections of its own.
template <FrequencyWeighting Meter> struct Accumulator {
    double fast, slow, peak, maxState, exposurePeak;
    bool clipped;
    double rawSum = 0.0, energySum = 0.0, exposureEnergy = 0.0;
    std::int64_t nonFinite = 0;

    void run(std::span<const float> raw, std::span<const float> input, WeightingFilter& meter,
        WeightingFilter& exposureA, WeightingFilter& exposureC, double fastAlpha, double slowAlpha,
        bool readsFast) noexcept
    {
        // Under Z the outer sections are the exposure's; otherwise the meter's.
        WeightingFilter& outer = Meter == FrequencyWeighting::z ? exposureC : meter;
        WeightingFilter& middle = Meter == FrequencyWeighting::a ? meter : exposureA;
        Biquad h = outer.highPass(), l = outer.lowPass(), m = middle.mid();
        const double gainA = exposureA.gain(), gainC = exposureC.gain();
        const std::size_t count = raw.size();
        for (std::size_t i = 0; i < count; ++i) {
            double r = raw[i];
            // NaN and infinity are silence, so that the filters and detectors recover after
            // them, and they do not clip.
            if (!FiniteSamples::isFinite(r)) {
                r = 0.0;
                ++nonFinite;
            }
            if (std::fabs(r) >= clipThreshold) clipped = true;
            double x = input[i];
            if (!FiniteSamples::isFinite(x)) x = 0.0;
            const double shared = l.process(h.process(x));
            const double c = gainC * shared;
            const double a = gainA * m.process(shared);
            double y = x;
            if constexpr (Meter == FrequencyWeighting::a) y = a;
            if constexpr (Meter == FrequencyWeighting::c) y = c;
            const double p = y * y;
            if (p > peak) peak = p;
            fast += fastAlpha * (p - fast);
            slow += slowAlpha * (p - slow);
            const double selected = readsFast ? fast : slow;
            if (selected > maxState) maxState = selected;
            rawSum += r * r;
            energySum += p;
            if constexpr (Meter != FrequencyWeighting::a) exposureEnergy += a * a;
            if constexpr (Meter != FrequencyWeighting::c) {
                const double cp = c * c;
                if (cp > exposurePeak) exposurePeak = cp;
            }
        }
        if constexpr (Meter == FrequencyWeighting::a) {
            meter.setState(h, m, l);
        } else if constexpr (Meter == FrequencyWeighting::c) {
            meter.setState(h, meter.mid(), l);
            exposureA.setState(exposureA.highPass(), m, exposureA.lowPass());
        } else {
            exposureC.setState(h, exposureC.mid(), l);
            exposureA.setState(exposureA.highPass(), m, exposureA.lowPass());
        }
    }
};

} // namespace

template <FrequencyWeighting Meter>
void SPLProcessor::accumulateAs(
    std::span<const float> raw, std::span<const float> input, bool readsFast) noexcept
{
    Accumulator<Meter> a {fastState_, slowState_, intervalPeak_, intervalMaxState_,
        intervalExposurePeak_, intervalClipped_};
    a.run(raw, input, filter_, exposureA_, exposureC_, fastAlpha_, slowAlpha_, readsFast);
    fastState_ = a.fast, slowState_ = a.slow, intervalPeak_ = a.peak;
    intervalMaxState_ = a.maxState, intervalClipped_ = a.clipped;
    intervalExposurePeak_ = a.exposurePeak;
    intervalNonFinite_ += a.nonFinite;
    intervalRawEnergy_ += a.rawSum;
    intervalEnergy_ += a.energySum;
    intervalExposureEnergy_ += a.exposureEnergy;
}

void SPLProcessor::accumulate(std::span<const float> raw, std::span<const float> input) noexcept
{
    const bool readsFast = response_ == TimeWeighting::fast;
    switch (filter_.weighting()) {
    case FrequencyWeighting::a:
        accumulateAs<FrequencyWeighting::a>(raw, input, readsFast);
        break;
    case FrequencyWeighting::c:
        accumulateAs<FrequencyWeighting::c>(raw, input, readsFast);
        break;
    case FrequencyWeighting::z:
        accumulateAs<FrequencyWeighting::z>(raw, input, readsFast);
        break;
    }
    intervalSamples_ += static_cast<std::int64_t>(raw.size());
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
    const bool metersA = weighting_ == FrequencyWeighting::a;
    const bool metersC = weighting_ == FrequencyWeighting::c;
    interval.exposureEnergy
        = (metersA ? intervalEnergy_ : intervalExposureEnergy_) * calibrationGain_;
    interval.exposurePeakPower
        = (metersC ? intervalPeak_ : intervalExposurePeak_) * calibrationGain_;

    intervalSamples_ = 0;
    intervalNonFinite_ = 0;
    intervalEnergy_ = 0.0;
    intervalRawEnergy_ = 0.0;
    intervalPeak_ = 0.0;
    intervalMaxState_ = 0.0;
    intervalClipped_ = false;
    intervalExposureEnergy_ = 0.0;
    intervalExposurePeak_ = 0.0;
    return interval;
}

void SPLProcessor::reset() noexcept
{
    filter_.reset();
    if (correctionFilter_) correctionFilter_->reset();
    exposureA_.reset();
    exposureC_.reset();
    intervalExposureEnergy_ = intervalExposurePeak_ = 0.0;
    fastState_ = slowState_ = 0.0;
    intervalSamples_ = intervalNonFinite_ = 0;
    intervalEnergy_ = intervalRawEnergy_ = intervalPeak_ = intervalMaxState_ = 0.0;
    intervalClipped_ = false;
}

} // namespace ostrel
