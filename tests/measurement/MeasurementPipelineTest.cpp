#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "measurement/MeasurementPipeline.h"
#include "measurement/SPLMath.h"
#include "support/AllocationCounter.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

struct RecordedCall {
    std::vector<float> samples;
    double sampleRate;
    std::optional<MeasurementInterval> interval;
    Date at;
};

class FakeRecorder : public PipelineRecorder {
public:
    void append(std::span<const float> samples, double sampleRate,
        const std::optional<MeasurementInterval>& interval, Date at) override
    {
        std::lock_guard lock(mutex);
        calls.push_back(
            {std::vector<float>(samples.begin(), samples.end()), sampleRate, interval, at});
    }
    std::mutex mutex;
    std::vector<RecordedCall> calls;
};

MicrophoneCorrection flatMicrophone(const std::string& name)
{
    return MicrophoneCorrection(name, {{20.0, 0.0}, {1000.0, 0.0}, {20000.0, 0.0}});
}

std::vector<MeasurementInterval> feed(
    MeasurementPipeline& pipeline, const std::vector<float>& samples, std::size_t block)
{
    std::vector<MeasurementInterval> intervals;
    for (std::size_t start = 0; start < samples.size(); start += block) {
        const std::size_t count = std::min(block, samples.size() - start);
        if (auto interval = pipeline.process(std::span(samples.data() + start, count)))
            intervals.push_back(*interval);
    }
    return intervals;
}

} // namespace

TEST(MeasurementPipeline, HundredBlocksOf480At48kHzGiveExactlyTenIntervalsOf4800)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto intervals = feed(pipeline, testsignals::noise(0.1, 48000), 480);
    ASSERT_EQ(intervals.size(), 10u);
    for (const auto& interval : intervals)
        EXPECT_EQ(interval.sampleCount, 4800);
}

TEST(MeasurementPipeline, BlocksOf1024CloseAfterFiveBlocksAndTheLeftoverDoesNotCarry)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto intervals = feed(pipeline, testsignals::noise(0.1, 1024 * 20), 1024);
    ASSERT_EQ(intervals.size(), 4u);
    for (const auto& interval : intervals)
        EXPECT_EQ(interval.sampleCount, 5120);
}

TEST(MeasurementPipeline, ASingleBlockLargerThanTheIntervalYieldsOneInterval)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto samples = testsignals::noise(0.1, 48000);
    const auto interval = pipeline.process(samples);
    ASSERT_TRUE(interval);
    EXPECT_EQ(interval->sampleCount, 48000);
    EXPECT_FALSE(pipeline.process(std::span(samples.data(), 10)));
}

TEST(MeasurementPipeline, IntervalLengthIsATenthOfTheRateTruncated)
{
    MeasurementPipeline pipeline;
    EXPECT_EQ(pipeline.snapshot().intervalLength, 4800);
    pipeline.prepare(44100.0);
    EXPECT_EQ(pipeline.snapshot().intervalLength, 4410);
    pipeline.prepare(22050.5);
    EXPECT_EQ(pipeline.snapshot().intervalLength, 2205);
    EXPECT_EQ(pipeline.snapshot().processor.sampleRate(), 22050.5);
}

TEST(MeasurementPipeline, LevelsFlowWhileNoSpectrumExistsYet)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto intervals = feed(pipeline, testsignals::sine(1000.0, 0.1, 48000.0, 9600), 4800);
    ASSERT_EQ(intervals.size(), 2u);
    EXPECT_FALSE(intervals[0].spectrum);
    EXPECT_GT(intervals[1].level, -40.0);
}

TEST(MeasurementPipeline, OneKilohertzAtMinusTwentyDecibelsPeakReadsMinus23Point01InEveryWeighting)
{
    for (auto weighting : allFrequencyWeightings) {
        MeasurementPipeline pipeline;
        pipeline.configure(weighting, TimeWeighting::fast, 0.0, std::nullopt);
        pipeline.prepare(48000.0);
        const auto intervals = feed(pipeline, testsignals::sine(1000.0, 0.1, 48000.0, 96000), 4800);
        EXPECT_NEAR(intervals.back().level, -23.0103, 0.01) << rawValue(weighting);
        EXPECT_NEAR(intervals.back().leq(), -23.0103, 0.01) << rawValue(weighting);
    }
}

TEST(MeasurementPipeline, ChangingOnlyTheOffsetMovesTheNextLevelWithoutAGlitch)
{
    MeasurementPipeline pipeline;
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 0.0, std::nullopt);
    pipeline.prepare(48000.0);
    const auto tone = testsignals::sine(1000.0, 0.1, 48000.0, 48000 * 2);
    const auto before = feed(pipeline, tone, 480);
    const double z1 = pipeline.snapshot().processor.filter().highPass().z1;

    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 100.0, std::nullopt);
    // The filter and the detectors were not touched by the settings change.
    EXPECT_EQ(pipeline.snapshot().processor.filter().highPass().z1, z1);
    const auto after = feed(pipeline, testsignals::sine(1000.0, 0.1, 48000.0, 4800), 480);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_NEAR(after[0].level - before.back().level, 100.0, 0.01);
}

TEST(MeasurementPipeline, ACorrectionLoadedWhileTheRateChangesNeverKeepsAnOldRateFilter)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    // The device restarts at 44.1 kHz in the gap between the design and the swap.
    pipeline.setDesignHookForTesting([&] { pipeline.prepare(44100.0); });
    pipeline.configure(FrequencyWeighting::c, TimeWeighting::slow, 3.0, flatMicrophone("flat"));
    pipeline.setDesignHookForTesting(nullptr);

    const auto state = pipeline.snapshot();
    EXPECT_EQ(state.processor.sampleRate(), 44100.0);
    EXPECT_EQ(state.processor.filter().sampleRate(), 44100.0);
    EXPECT_EQ(state.intervalLength, 4410);
    // The other settings still took effect.
    EXPECT_EQ(state.processor.weighting(), FrequencyWeighting::c);
    EXPECT_EQ(state.processor.response(), TimeWeighting::slow);
    EXPECT_EQ(state.processor.calibrationOffset(), 3.0);
}

TEST(MeasurementPipeline, ACorrectionSwapsInAWholeProcessorForTheCurrentRate)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(96000.0);
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 0.0, flatMicrophone("flat"));
    auto state = pipeline.snapshot();
    EXPECT_TRUE(state.processor.hasCorrectionFilter());
    EXPECT_EQ(state.processor.sampleRate(), 96000.0);
    // The same correction again keeps the running processor.
    feed(pipeline, testsignals::noise(0.1, 1000), 1000);
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 0.0, flatMicrophone("flat"));
    EXPECT_EQ(pipeline.snapshot().processor.pendingSampleCount(), 1000);
    // A restart keeps the correction and designs it for the new rate.
    pipeline.prepare(48000.0);
    state = pipeline.snapshot();
    EXPECT_TRUE(state.processor.hasCorrectionFilter());
    EXPECT_EQ(state.processor.correction()->name(), "flat");
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 0.0, std::nullopt);
    EXPECT_FALSE(pipeline.snapshot().processor.hasCorrectionFilter());
}

TEST(MeasurementPipeline, PrepareKeepsTheSettingsAndStartsFromZero)
{
    MeasurementPipeline pipeline;
    pipeline.configure(FrequencyWeighting::c, TimeWeighting::slow, 42.0, std::nullopt);
    feed(pipeline, testsignals::noise(0.1, 1000), 1000);
    pipeline.prepare(44100.0);
    const auto state = pipeline.snapshot();
    EXPECT_EQ(state.processor.weighting(), FrequencyWeighting::c);
    EXPECT_EQ(state.processor.response(), TimeWeighting::slow);
    EXPECT_EQ(state.processor.calibrationOffset(), 42.0);
    EXPECT_EQ(state.processor.pendingSampleCount(), 0);
    EXPECT_EQ(state.processor.currentLevel(), -200.0);
}

TEST(MeasurementPipeline, RecorderGetsEveryBlockWithTheIntervalThatClosedOnItAndNoneOtherwise)
{
    const Date fixed = Date {} + std::chrono::seconds(1000);
    MeasurementPipeline pipeline([fixed] { return fixed; });
    pipeline.prepare(48000.0);
    auto recorder = std::make_shared<FakeRecorder>();
    pipeline.setRecorder(recorder);
    const auto samples = testsignals::noise(0.1, 9600);
    const auto intervals = feed(pipeline, samples, 1200);
    ASSERT_EQ(recorder->calls.size(), 8u);
    ASSERT_EQ(intervals.size(), 2u);
    for (std::size_t i = 0; i < 8; ++i) {
        const auto& call = recorder->calls[i];
        EXPECT_EQ(call.sampleRate, 48000.0);
        EXPECT_EQ(call.at, fixed);
        ASSERT_EQ(call.samples.size(), 1200u);
        EXPECT_EQ(
            std::memcmp(call.samples.data(), samples.data() + i * 1200, 1200 * sizeof(float)), 0);
        EXPECT_EQ(call.interval.has_value(), i == 3 || i == 7) << i;
    }
    EXPECT_EQ(*recorder->calls[3].interval, intervals[0]);
    EXPECT_EQ(*recorder->calls[7].interval, intervals[1]);

    // The recorder survives a restart, and detaching stops the flow.
    pipeline.prepare(44100.0);
    feed(pipeline, samples, 1200);
    EXPECT_EQ(recorder->calls.size(), 16u);
    EXPECT_EQ(recorder->calls.back().sampleRate, 44100.0);
    pipeline.setRecorder(nullptr);
    feed(pipeline, samples, 1200);
    EXPECT_EQ(recorder->calls.size(), 16u);
}

TEST(MeasurementPipeline, IntervalsCarryASpectrumOnceTheShortWindowIsFull)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto intervals = feed(pipeline, testsignals::sine(1000.0, 0.1, 48000.0, 48000), 4800);
    ASSERT_EQ(intervals.size(), 10u);
    // 16384 samples make the short window: the fourth interval ends at 19200.
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_FALSE(intervals[i].spectrum) << i;
    for (std::size_t i = 3; i < 10; ++i)
        ASSERT_TRUE(intervals[i].spectrum) << i;
    EXPECT_NEAR(*intervals[9].spectrum->dominantFrequency, 1000.0, 1.0);
    EXPECT_NEAR(intervals[9].spectrum->bandLevels[17], -23.01, 0.05);
}

TEST(MeasurementPipeline, SpectraAreUnweightedAndCalibrated)
{
    MeasurementPipeline pipeline;
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 100.0, std::nullopt);
    pipeline.prepare(48000.0);
    // 100 Hz is 19 dB down in A weighting; the spectrum still reads the tone as it is.
    const auto intervals = feed(pipeline, testsignals::sine(100.0, 0.1, 48000.0, 48000), 4800);
    ASSERT_TRUE(intervals.back().spectrum);
    EXPECT_NEAR(intervals.back().spectrum->bandLevels[7], 100.0 - 23.01, 0.1);
    EXPECT_LT(intervals.back().level, 100.0 - 23.01 - 15.0);
}

TEST(MeasurementPipeline, ACorrectionReachesTheAnalyserAndARestartKeepsIt)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    pipeline.configure(FrequencyWeighting::a, TimeWeighting::fast, 0.0, flatMicrophone("flat"));
    EXPECT_TRUE(pipeline.snapshot().analyzerHasCorrection);
    pipeline.prepare(96000.0);
    const auto state = pipeline.snapshot();
    EXPECT_TRUE(state.analyzerHasCorrection);
    EXPECT_EQ(state.analyzerSampleRate, 96000.0);
    EXPECT_EQ(state.analyzerFilled, 0);
}

TEST(MeasurementPipeline, ProcessDoesNotAllocateWithoutARecorder)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    const auto samples = testsignals::noise(0.1, 48000 * 2);
    feed(pipeline, samples, 480); // fill both windows first
    std::size_t intervals = 0;
    std::size_t allocations = 0;
    {
        testsupport::AllocationCounter counter;
        for (std::size_t start = 0; start < samples.size(); start += 480) {
            if (pipeline.process(std::span(samples.data() + start, 480))) ++intervals;
        }
        allocations = counter.count();
    }
    EXPECT_EQ(intervals, 20u);
    EXPECT_EQ(allocations, 0u);
}

TEST(MeasurementPipeline, ASetClockDatesTheNextBlocksAndNullGivesTheSystemClockBack)
{
    MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    auto recorder = std::make_shared<FakeRecorder>();
    pipeline.setRecorder(recorder);
    const Date fixed = Date {} + std::chrono::seconds(1000);
    pipeline.setClock([fixed] { return fixed; });
    const auto samples = testsignals::noise(0.1, 1200);
    feed(pipeline, samples, 1200);
    ASSERT_EQ(recorder->calls.size(), 1u);
    EXPECT_EQ(recorder->calls[0].at, fixed);
    const Date before = std::chrono::system_clock::now();
    pipeline.setClock(nullptr);
    feed(pipeline, samples, 1200);
    ASSERT_EQ(recorder->calls.size(), 2u);
    EXPECT_GE(recorder->calls[1].at, before);
}
