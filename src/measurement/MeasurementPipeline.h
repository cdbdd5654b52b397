#pragma once

// Where a block of samples enters the system's own logic. Holds the processor behind one lock,
// fed by the audio tap on an audio thread; cuts the stream into intervals of a tenth of a second,
// hands blocks to the recorder when one is attached, and returns finished intervals so that the
// tap can post them to the main thread.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

#include "common/Date.h"
#include "measurement/AudioBufferView.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/MicrophoneCorrection.h"
#include "measurement/PipelineRecorder.h"
#include "measurement/SPLProcessor.h"
#include "measurement/SpectrumAnalyzer.h"
#include "measurement/TimeWeighting.h"

namespace ostrel {

class MeasurementPipeline {
public:
    struct State {
        SPLProcessor processor {48000.0, FrequencyWeighting::a, TimeWeighting::fast, 0.0};
        SpectrumAnalyzer analyzer {48000.0};
        std::int64_t intervalLength = 4800;
        std::shared_ptr<PipelineRecorder> recorder;
    };

    // What tests and diagnostics may see of the state, copied under the lock.
    struct Snapshot {
        SPLProcessor processor;
        std::int64_t intervalLength;
        bool hasRecorder;
        double analyzerSampleRate;
        std::int64_t analyzerFilled;
        bool analyzerHasCorrection;
    };

    using Clock = std::function<Date()>;

    // The clock dates blocks handed to the recorder; the system clock unless a test injects one.
    explicit MeasurementPipeline(Clock clock = nullptr);
    // Main thread, before any block is processed: a pipeline the station made keeps its own
    // otherwise. Null restores the system clock.
    void setClock(Clock clock);

    // Main thread, whenever the measuring settings change. A new correction is designed outside
    // the lock; everything else is a field change under it.
    void configure(FrequencyWeighting weighting, TimeWeighting response, double calibrationOffset,
        const std::optional<MicrophoneCorrection>& correction);
    // Main thread, before a tap is installed: re-targets everything at a new rate.
    void prepare(double sampleRate);
    void setRecorder(std::shared_ptr<PipelineRecorder> recorder);

    // Audio thread. At most one interval per block.
    std::optional<MeasurementInterval> process(std::span<const float> samples);

    Snapshot snapshot() const;

    // Runs in `configure` after a new correction was designed and before it is swapped in, so
    // that a test can put a device restart into exactly that gap.
    void setDesignHookForTesting(std::function<void()> hook) { designHook_ = std::move(hook); }

    using TapProvider = std::function<void(const AudioBufferView&)>;
    using MainThreadPoster = std::function<void(std::function<void()>)>;

    // The function the audio tap calls with each buffer. Measures channel `channel` (zero-based)
    // and posts each finished interval through `postToMain`, where `deliver` runs. Its scratch
    // buffer holds `largestBlock` frames, sized here so that the audio thread never allocates;
    // a larger block is measured in pieces of that size.
    static TapProvider makeTapProvider(std::shared_ptr<MeasurementPipeline> pipeline, int channel,
        std::size_t largestBlock, std::function<void(MeasurementInterval)> deliver,
        MainThreadPoster postToMain);

private:
    mutable std::mutex mutex_;
    State state_;
    Clock clock_;
    std::function<void()> designHook_;
};

} // namespace ostrel
