#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "measurement/MeasurementPipeline.h"
#include "measurement/SPLMath.h"
#include "support/AllocationCounter.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

// Holds posted tasks until the "main thread" runs them, as a queued call would.
struct FakeMainQueue {
    std::vector<std::function<void()>> tasks;
    MeasurementPipeline::MainThreadPoster poster()
    {
        return [this](std::function<void()> task) { tasks.push_back(std::move(task)); };
    }
    void runAll()
    {
        auto pending = std::move(tasks);
        tasks.clear();
        for (auto& task : pending)
            task();
    }
};

std::vector<float> interleave(const std::vector<std::vector<float>>& channels)
{
    std::vector<float> frames(channels.size() * channels[0].size());
    for (std::size_t i = 0; i < channels[0].size(); ++i)
        for (std::size_t c = 0; c < channels.size(); ++c)
            frames[i * channels.size() + c] = channels[c][i];
    return frames;
}

AudioBufferView view(const std::vector<float>& frames, int channels,
    AudioBufferView::SampleFormat format = AudioBufferView::SampleFormat::float32)
{
    return {reinterpret_cast<const std::byte*>(frames.data()),
        frames.size() / static_cast<std::size_t>(channels), channels, format};
}

} // namespace

TEST(MeasurementTap, MeasuresTheChosenChannelAndDeliversOnTheMainQueue)
{
    auto pipeline = std::make_shared<MeasurementPipeline>();
    pipeline->configure(FrequencyWeighting::z, TimeWeighting::fast, 0.0, std::nullopt);
    pipeline->prepare(48000.0);
    FakeMainQueue queue;
    std::vector<MeasurementInterval> delivered;
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline, 1, 4800, [&](MeasurementInterval interval) { delivered.push_back(interval); },
        queue.poster());

    // Channel 0 is silent, channel 1 carries the tone, channel 2 is loud noise.
    const auto frames = interleave({std::vector<float>(4800, 0.0f),
        testsignals::sine(1000.0, 0.1, 48000.0, 4800), testsignals::noise(0.9, 4800)});
    for (int i = 0; i < 20; ++i)
        tap(view(frames, 3));
    EXPECT_TRUE(delivered.empty()) << "delivery waits for the main queue";
    EXPECT_EQ(queue.tasks.size(), 20u);
    queue.runAll();
    ASSERT_EQ(delivered.size(), 20u);
    EXPECT_NEAR(delivered.back().leq(), -23.0103, 0.01);
    EXPECT_EQ(delivered.back().sampleCount, 4800);
}

TEST(MeasurementTap, AChannelIndexBeyondTheFormatsChannelsYieldsNothingAndDoesNotCrash)
{
    auto pipeline = std::make_shared<MeasurementPipeline>();
    FakeMainQueue queue;
    int deliveries = 0;
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline, 2, 4800, [&](MeasurementInterval) { ++deliveries; }, queue.poster());
    const auto frames = interleave({testsignals::noise(0.5, 4800), testsignals::noise(0.5, 4800)});
    for (int i = 0; i < 5; ++i)
        tap(view(frames, 2));
    queue.runAll();
    EXPECT_EQ(deliveries, 0);
    EXPECT_EQ(pipeline->snapshot().processor.pendingSampleCount(), 0);
}

TEST(MeasurementTap, BuffersThatAreNotFloatAreDropped)
{
    auto pipeline = std::make_shared<MeasurementPipeline>();
    FakeMainQueue queue;
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline, 0, 4800, [](MeasurementInterval) {}, queue.poster());
    const auto frames = testsignals::noise(0.5, 4800);
    tap(view(frames, 1, AudioBufferView::SampleFormat::int16));
    tap(AudioBufferView {});
    EXPECT_EQ(pipeline->snapshot().processor.pendingSampleCount(), 0);
    tap(view(frames, 1));
    EXPECT_EQ(pipeline->snapshot().processor.pendingSampleCount(), 0) << "4800 closed an interval";
    queue.runAll();
}

TEST(MeasurementTap, TheAudioThreadDoesNotAllocateForABlockLargerThanTheFirst)
{
    auto pipeline = std::make_shared<MeasurementPipeline>();
    pipeline->prepare(48000.0);
    FakeMainQueue queue;
    // The largest block the capture may deliver: a tenth of a second.
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline, 1, 4800, [](MeasurementInterval) {}, queue.poster());
    const auto small = interleave({testsignals::noise(0.5, 256), testsignals::noise(0.5, 256)});
    const auto large = interleave({testsignals::noise(0.5, 4096), testsignals::noise(0.5, 4096)});

    std::size_t allocations = 0;
    {
        const testsupport::AllocationCounter counter;
        tap(view(small, 2));
        tap(view(large, 2));
        allocations = counter.count();
    }
    EXPECT_EQ(allocations, 0u);
    // 256 + 4096 frames: no interval closed yet, every frame measured.
    EXPECT_EQ(pipeline->snapshot().processor.pendingSampleCount(), 256 + 4096);
    EXPECT_TRUE(queue.tasks.empty());
}

TEST(MeasurementTap, ABlockLargerThanPromisedIsMeasuredWholeInPieces)
{
    auto pipeline = std::make_shared<MeasurementPipeline>();
    pipeline->configure(FrequencyWeighting::z, TimeWeighting::fast, 0.0, std::nullopt);
    pipeline->prepare(48000.0);
    FakeMainQueue queue;
    std::vector<MeasurementInterval> delivered;
    auto tap = MeasurementPipeline::makeTapProvider(
        pipeline, 0, 4800, [&](MeasurementInterval interval) { delivered.push_back(interval); },
        queue.poster());
    const auto tone = testsignals::sine(1000.0, 0.1, 48000.0, 9600 + 480);
    tap(view(tone, 1));
    queue.runAll();
    ASSERT_EQ(delivered.size(), 2u);
    EXPECT_EQ(delivered[0].sampleCount, 4800);
    EXPECT_EQ(delivered[1].sampleCount, 4800);
    EXPECT_EQ(pipeline->snapshot().processor.pendingSampleCount(), 480);
    EXPECT_NEAR(delivered[1].leq(), -23.0103, 0.01);
}
