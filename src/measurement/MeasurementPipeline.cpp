#include "measurement/MeasurementPipeline.h"

#include <utility>

namespace ostrel {

namespace {

std::int64_t intervalLength(double sampleRate)
{
    return static_cast<std::int64_t>(sampleRate / 10.0);
}

} // namespace

MeasurementPipeline::MeasurementPipeline(Clock clock) : clock_(std::move(clock))
{
    if (!clock_) clock_ = [] { return std::chrono::system_clock::now(); };
}

void MeasurementPipeline::configure(FrequencyWeighting weighting, TimeWeighting response,
                                    double calibrationOffset,
                                    const std::optional<MicrophoneCorrection>& correction)
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
    if (correctionChanged) {
        replacement.emplace(sampleRate, FrequencyWeighting::a, TimeWeighting::fast, 0.0, correction);
    }
    if (designHook_) designHook_();

    std::lock_guard lock(mutex_);
    // A restart at another rate may have won the race; its processor is the right one then.
    if (replacement && replacement->sampleRate() == state_.processor.sampleRate()) {
        state_.processor = std::move(*replacement);
    }
    state_.processor.setWeighting(weighting);
    state_.processor.setResponse(response);
    state_.processor.setCalibrationOffset(calibrationOffset);
}

void MeasurementPipeline::prepare(double sampleRate)
{
    std::lock_guard lock(mutex_);
    const SPLProcessor& current = state_.processor;
    state_.processor = SPLProcessor(sampleRate, current.weighting(), current.response(),
                                    current.calibrationOffset(), current.correction());
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
    std::shared_ptr<PipelineRecorder> recorder;
    double sampleRate = 0.0;
    {
        std::lock_guard lock(mutex_);
        state_.processor.process(samples);
        // Tested after the whole block: an interval holds whole blocks, at most one per block.
        if (state_.processor.pendingSampleCount() >= state_.intervalLength) {
            interval = state_.processor.takeInterval();
        }
        recorder = state_.recorder;
        sampleRate = state_.processor.sampleRate();
    }

    if (recorder) {
        // The span is only valid during the callback, so the recorder gets its own copy.
        recorder->enqueueAppend(std::vector<float>(samples.begin(), samples.end()), sampleRate,
                                interval, clock_());
    }
    return interval;
}

MeasurementPipeline::State MeasurementPipeline::snapshot() const
{
    std::lock_guard lock(mutex_);
    return state_;
}

} // namespace ostrel
