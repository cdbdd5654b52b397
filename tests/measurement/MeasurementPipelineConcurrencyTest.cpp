#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

#include "measurement/MeasurementPipeline.h"
#include "support/Signals.h"

using namespace ostrel;

// Run under ThreadSanitizer by `make test`: the audio thread processes while the main thread
// reconfigures, swaps corrections and attaches a recorder.
TEST(MeasurementPipelineConcurrency, ProcessOnAnAudioThreadWhileTheMainThreadConfigures)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto block = testsignals::sine(1000.0, 0.1, 48000.0, 480);
    std::atomic<bool> running {true};
    std::atomic<int> intervals {0};
    std::atomic<int> badIntervals {0};

    std::thread audio([&] {
        while (running.load()) {
            if (auto interval = pipeline.process(block)) {
                ++intervals;
                if (interval->sampleCount < 4800 || !std::isfinite(interval->level)) ++badIntervals;
            }
            // Real blocks arrive every few milliseconds; a loop that re-takes the lock at once
            // would starve the configuring thread of an unfair lock, which no device does.
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    });

    const MicrophoneCorrection tilt("tilt", {{20.0, 1.0}, {1000.0, 0.0}, {20000.0, -3.0}});
    for (int i = 0; i < 200; ++i) {
        const auto weighting = allFrequencyWeightings[static_cast<std::size_t>(i % 3)];
        const auto response = i % 2 ? TimeWeighting::fast : TimeWeighting::slow;
        const std::optional<MicrophoneCorrection> correction
            = i % 10 == 0 ? std::optional(tilt) : std::nullopt;
        pipeline.configure(weighting, response, 10.0 * i, correction);
        if (i % 50 == 0) pipeline.setRecorder(nullptr);
    }
    // Let the audio thread see the final configuration before stopping it.
    const int seen = intervals.load();
    while (intervals.load() < seen + 3)
        std::this_thread::yield();
    running = false;
    audio.join();

    EXPECT_GT(intervals.load(), 0);
    EXPECT_EQ(badIntervals.load(), 0);
    const auto state = pipeline.snapshot();
    EXPECT_EQ(state.processor.calibrationOffset(), 1990.0);
    EXPECT_EQ(state.processor.weighting(), allFrequencyWeightings[199 % 3]);
    EXPECT_FALSE(state.processor.hasCorrectionFilter());
}

namespace {

// Counts the blocks it is given and whether one is being handed over right now.
class CountingRecorder : public PipelineRecorder {
public:
    void append(
        std::span<const float>, double, const std::optional<MeasurementInterval>&, Date) override
    {
        inside.store(true);
        // Long enough that a block handed over outside the pipeline's lock would be caught.
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        ++blocks;
        inside.store(false);
    }
    std::atomic<bool> inside {false};
    std::atomic<int> blocks {0};
};

} // namespace

TEST(MeasurementPipelineConcurrency, NoBlockReachesARecorderOnceItIsDetached)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto block = testsignals::sine(1000.0, 0.1, 48000.0, 480);
    std::atomic<bool> running {true};
    std::thread audio([&] {
        while (running.load()) {
            pipeline.process(block);
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    });

    int lateBlocks = 0;
    for (int round = 0; round < 20; ++round) {
        auto recorder = std::make_shared<CountingRecorder>();
        pipeline.setRecorder(recorder);
        while (recorder->blocks.load() < 3)
            std::this_thread::yield();
        pipeline.setRecorder(nullptr);
        // Detached: nothing is on its way in, and nothing comes later.
        if (recorder->inside.load()) ++lateBlocks;
        const int counted = recorder->blocks.load();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (recorder->blocks.load() != counted) ++lateBlocks;
        // The main thread holds the last reference, so the recorder ends here, not on the audio
        // thread.
        EXPECT_EQ(recorder.use_count(), 1);
    }
    running = false;
    audio.join();
    EXPECT_EQ(lateBlocks, 0);
}
