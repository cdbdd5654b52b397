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
// keeps the whole chain in registers. `Weighted` is false for Z, which passes samples untouched.
template <bool Weighted> struct Accumulator {
    double fast, slow, peak, maxState, rawSum = 0.0, energySum = 0.0;
    bool clipped;
    std::int64_t nonFinite = 0;

    void run(std::span<const float> raw, std::span<const float> input, WeightingFilter& filter,
        double fastAlpha, double slowAlpha, bool readsFast) noexcept
    {
        Biquad h = filter.highPass(), m = filter.mid(), l = filter.lowPass();
        const double gain = filter.gain();
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
            double y = input[i];
            if (!FiniteSamples::isFinite(y)) y = 0.0;
            if constexpr (Weighted) y = gain * l.process(m.process(h.process(y)));
            const double p = y * y;
            if (p > peak) peak = p;
            fast += fastAlpha * (p - fast);
            slow += slowAlpha * (p - slow);
            const double selected = readsFast ? fast : slow;
            if (selected > maxState) maxState = selected;
            rawSum += r * r;
            energySum += p;
        }
        if constexpr (Weighted) filter.setState(h, m, l);
    }
};

} // namespace

void SPLProcessor::accumulate(std::span<const float> raw, std::span<const float> input) noexcept
{
    const bool readsFast = response_ == TimeWeighting::fast;
    double rawSum = 0.0, energySum = 0.0;
    std::int64_t nonFinite = 0;
    if (filter_.weighting() == FrequencyWeighting::z) {
        Accumulator<false> a {
            fastState_, slowState_, intervalPeak_, intervalMaxState_, 0.0, 0.0, intervalClipped_};
        a.run(raw, input, filter_, fastAlpha_, slowAlpha_, readsFast);
        fastState_ = a.fast, slowState_ = a.slow, intervalPeak_ = a.peak;
        intervalMaxState_ = a.maxState, intervalClipped_ = a.clipped;
        rawSum = a.rawSum, energySum = a.energySum, nonFinite = a.nonFinite;
    } else {
        Accumulator<true> a {
            fastState_, slowState_, intervalPeak_, intervalMaxState_, 0.0, 0.0, intervalClipped_};
        a.run(raw, input, filter_, fastAlpha_, slowAlpha_, readsFast);
        fastState_ = a.fast, slowState_ = a.slow, intervalPeak_ = a.peak;
        intervalMaxState_ = a.maxState, intervalClipped_ = a.clipped;
        rawSum = a.rawSum, energySum = a.energySum, nonFinite = a.nonFinite;
    }
    intervalNonFinite_ += nonFinite;
    intervalRawEnergy_ += rawSum;
    intervalEnergy_ += energySum;
    intervalSamples_ += static_cast<std::int64_t>(raw.size());
    accumulateExposure(input);
}

namespace {

template <bool RunsA, bool RunsC> struct ExposureAccumulator {
    double energy = 0.0;
    double peak;

    void run(std::span<const float> input, WeightingFilter& a, WeightingFilter& c) noexcept
    {
        Biquad ah = a.highPass(), am = a.mid(), al = a.lowPass();
        Biquad ch = c.highPass(), cm = c.mid(), cl = c.lowPass();
        const double aGain = a.gain(), cGain = c.gain();
        for (const float sample : input) {
            const double x = FiniteSamples::isFinite(sample) ? sample : 0.0;
            if constexpr (RunsA) {
                const double y = aGain * al.process(am.process(ah.process(x)));
                energy += y * y;
            }
            if constexpr (RunsC) {
                const double y = cGain * cl.process(cm.process(ch.process(x)));
                if (y * y > peak) peak = y * y;
            }
        }
        if constexpr (RunsA) a.setState(ah, am, al);
        if constexpr (RunsC) c.setState(ch, cm, cl);
    }
};

} // namespace

void SPLProcessor::accumulateExposure(std::span<const float> input) noexcept
{
    if (weighting_ == FrequencyWeighting::a) {
        ExposureAccumulator<false, true> run {0.0, intervalExposurePeak_};
        run.run(input, exposureA_, exposureC_);
        intervalExposurePeak_ = run.peak;
    } else if (weighting_ == FrequencyWeighting::c) {
        ExposureAccumulator<true, false> run {0.0, 0.0};
        run.run(input, exposureA_, exposureC_);
        intervalExposureEnergy_ += run.energy;
    } else {
        ExposureAccumulator<true, true> run {0.0, intervalExposurePeak_};
        run.run(input, exposureA_, exposureC_);
        intervalExposureEnergy_ += run.energy;
        intervalExposurePeak_ = run.peak;
    }
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
