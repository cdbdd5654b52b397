#include "measurement/MeasurementPipeline.h"

#include "measurement/MeasurementLog.h"

#include <utility>

namespace ostrel {

namespace {

std::int64_t intervalLength(double sampleRate)
{
    return static_cast<std::int64_t>(sampleRate / 10.0);
}

} // namespace

MeasurementPipeline::MeasurementPipeline(Clock clock)
{
    setClock(std::move(clock));
}

void MeasurementPipeline::setClock(Clock clock)
{
    if (!clock) clock = [] { return std::chrono::system_clock::now(); };
    std::lock_guard lock(mutex_);
    clock_ = std::move(clock);
}

void MeasurementPipeline::configure(FrequencyWeighting weighting, TimeWeighting response,
    double calibrationOffset, const std::optional<MicrophoneCorrection>& correction)
{
    double sampleRate = 0.0;
    bool correctionChanged = false;
    {
        std::lock_guard lock(mutex_);
        sampleRate = state_.processor.sampleRate();
        correctionChanged = state_.processor.correction() != correction;
    }

    // The design work runs here, outside the lock, so the audio thread never waits behind it.
    std::optional<SPLProcessor> replacement;
    std::optional<SpectrumAnalyzer> replacementAnalyzer;
    if (correctionChanged) {
        replacement.emplace(
            sampleRate, FrequencyWeighting::a, TimeWeighting::fast, 0.0, correction);
        replacementAnalyzer.emplace(sampleRate);
        replacementAnalyzer->setCorrection(correction);
    }
    if (designHook_) designHook_();

    {
        std::lock_guard lock(mutex_);
        // A restart at another rate may have won the race; its pair is the right one then.
        if (replacement && replacement->sampleRate() == state_.processor.sampleRate()) {
            std::swap(state_.processor, *replacement);
            std::swap(state_.analyzer, *replacementAnalyzer);
        }
        state_.processor.setWeighting(weighting);
        state_.processor.setResponse(response);
        state_.processor.setCalibrationOffset(calibrationOffset);
    }
    // The replaced pair is destroyed here, outside the lock.
}

void MeasurementPipeline::prepare(double sampleRate)
{
    std::lock_guard lock(mutex_);
    const SPLProcessor& current = state_.processor;
    state_.processor = SPLProcessor(sampleRate, current.weighting(), current.response(),
        current.calibrationOffset(), current.correction());
    state_.analyzer = SpectrumAnalyzer(sampleRate);
    state_.analyzer.setCorrection(state_.processor.correction());
    state_.intervalLength = intervalLength(sampleRate);
}

void MeasurementPipeline::setRecorder(std::shared_ptr<PipelineRecorder> recorder)
{
    std::lock_guard lock(mutex_);
    state_.recorder = std::move(recorder);
}

std::optional<MeasurementInterval> MeasurementPipeline::process(std::span<const float> samples)
{
    std::optional<MeasurementInterval> interval;
    std::int64_t nonFinite = 0;
    {
        std::lock_guard lock(mutex_);
        state_.processor.process(samples);
        // The analyser sees raw samples: correction reaches spectra as per-bin gains.
        state_.analyzer.append(samples);
        // Tested after the whole block: an interval holds whole blocks, at most one per block.
        if (state_.processor.pendingSampleCount() >= state_.intervalLength) {
            nonFinite = state_.processor.pendingNonFiniteCount();
            interval = state_.processor.takeInterval();
            interval->spectrum = state_.analyzer.analyze(state_.processor.calibrationOffset());
        }
        // Under the lock, so that once `setRecorder` has swapped a recorder out no block is
        // still on its way into it, and the audio thread never holds the last reference to one.
        // The recorder only copies the block into its queue.
        if (state_.recorder)
            state_.recorder->append(samples, state_.processor.sampleRate(), interval, clock_());
    }
    if (nonFinite > 0) MeasurementLog::nonFiniteSamples(nonFinite);
    return interval;
}

MeasurementPipeline::Snapshot MeasurementPipeline::snapshot() const
{
    std::lock_guard lock(mutex_);
    return {state_.processor, state_.intervalLength, state_.recorder != nullptr,
        state_.analyzer.sampleRate(), state_.analyzer.filled(), state_.analyzer.hasCorrection()};
}

} // namespace ostrel
