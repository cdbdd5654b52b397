#include <gtest/gtest.h>

#include <cmath>

#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "sessions/SessionOverview.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

// Frame i at `levelOf(i)`, with a flat fine spectrum `fineOffset` dB below that level.
RecordingFrames recorded(std::int64_t count, const std::function<double(std::int64_t)>& levelOf,
    double fineOffset = 20.0)
{
    QByteArray bytes = RecordingFormat::header();
    for (std::int64_t index = 0; index < count; ++index) {
        MeasurementInterval frame = interval(levelOf(index));
        frame.spectrum.emplace().fineBandLevels.fill(levelOf(index) - fineOffset);
        const double time = static_cast<double>(index + 1) / 10.0;
        bytes += RecordingFormat::encode({time, time, frame});
    }
    return *RecordingFrames::fromBytes(bytes);
}

double steady(std::int64_t)
{
    return 70.0;
}

} // namespace

TEST(SessionOverview, OneFrameRecordingHasOneColumnAndOneEmptyCheckpoint)
{
    const SessionOverview overview = SessionOverview::build(recorded(1, steady));
    EXPECT_EQ(overview.columns, 1);
    ASSERT_EQ(overview.levels.size(), 1U);
    EXPECT_EQ(overview.levels[0], 70.0);
    ASSERT_EQ(overview.checkpoints.size(), 1U);
    EXPECT_TRUE(overview.checkpoints[0].isEmpty());
    EXPECT_NEAR(overview.spectrogramLevel(0, 0), 50.0F, 1e-4);
}

TEST(SessionOverview, NoFramesGiveOneSilentColumn)
{
    const SessionOverview overview = SessionOverview::build(recorded(0, steady));
    EXPECT_EQ(overview.columns, 1);
    EXPECT_EQ(overview.levels, std::vector<double> {-200.0});
    EXPECT_EQ(overview.spectrogram.size(), SpectrumBand::fineCount);
    EXPECT_EQ(overview.spectrogramLevel(0, 239), -200.0F);
    EXPECT_TRUE(overview.checkpoints.empty());
}

TEST(SessionOverview, ColumnsAreCappedAtSixteenHundredAndHoldTheLoudestLevel)
{
    // Two frames per column, the second louder.
    const SessionOverview overview = SessionOverview::build(
        recorded(3200, [](std::int64_t index) { return index % 2 == 0 ? 60.0 : 75.0; }));
    EXPECT_EQ(overview.columns, 1600);
    ASSERT_EQ(overview.levels.size(), 1600U);
    for (double level : overview.levels)
        EXPECT_EQ(level, 75.0);
    EXPECT_EQ(overview.spectrogram.size(), 1600U * SpectrumBand::fineCount);
}

TEST(SessionOverview, SpectrogramIsTheMeanPowerOfEachColumn)
{
    const SessionOverview overview = SessionOverview::build(
        recorded(3200, [](std::int64_t index) { return index % 2 == 0 ? 80.0 : 90.0; }));
    // 60 and 70 dB: the mean of 1e6 and 1e7, not of the decibels.
    const double expected = 10.0 * std::log10((1e6 + 1e7) / 2.0);
    EXPECT_NEAR(overview.spectrogramLevel(0, 0), expected, 1e-4);
    EXPECT_NEAR(overview.spectrogramLevel(1599, 239), expected, 1e-4);
}

TEST(SessionOverview, FewerFramesThanTheCapGiveOneColumnEach)
{
    const SessionOverview overview = SessionOverview::build(
        recorded(5, [](std::int64_t index) { return 60.0 + static_cast<double>(index); }));
    EXPECT_EQ(overview.levels, (std::vector<double> {60.0, 61.0, 62.0, 63.0, 64.0}));
}

TEST(SessionOverview, ColumnWithoutSpectrumStaysAtTheFloor)
{
    QByteArray bytes = RecordingFormat::header();
    bytes += RecordingFormat::encode({0.1, 0.1, interval(70.0)});
    MeasurementInterval withSpectrum = interval(70.0);
    withSpectrum.spectrum.emplace().fineBandLevels.fill(40.0);
    bytes += RecordingFormat::encode({0.2, 0.2, withSpectrum});
    const SessionOverview overview = SessionOverview::build(*RecordingFrames::fromBytes(bytes));
    EXPECT_EQ(overview.spectrogramLevel(0, 10), -200.0F);
    EXPECT_NEAR(overview.spectrogramLevel(1, 10), 40.0F, 1e-4);
}

TEST(SessionOverview, CheckpointsHoldTheStatisticsOfEveryFrameBefore)
{
    const RecordingFrames frames
        = recorded(1300, [](std::int64_t index) { return 60.0 + static_cast<double>(index % 30); });
    const SessionOverview overview = SessionOverview::build(frames);
    ASSERT_EQ(overview.checkpoints.size(), 3U);
    for (std::int64_t k = 0; k < 3; ++k) {
        LevelStatistics expected;
        for (std::int64_t index = 0; index < k * 600; ++index)
            expected.add(frames.frame(index, false)->interval);
        EXPECT_EQ(overview.checkpoints[static_cast<std::size_t>(k)], expected) << k;
    }
}

TEST(SessionOverview, CancelledBuildStopsWithWhatItHas)
{
    const RecordingFrames frames = recorded(10'000, steady);
    int asked = 0;
    const SessionOverview overview = SessionOverview::build(frames, [&] {
        ++asked;
        return asked == 2; // the second look, at frame 4096
    });
    EXPECT_EQ(asked, 2);
    // Checkpoints up to frame 4096 only: 0, 600, ..., 3600.
    EXPECT_EQ(overview.checkpoints.size(), 7U);
    EXPECT_EQ(overview.levels.back(), -200.0);
}
