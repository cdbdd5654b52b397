#include "SessionPlayerTestSupport.h"

using namespace ostrel;
using namespace ostrel::replay_test;

TEST_F(PlayerTest, SeekBeforeTheFirstFrameFeedsNothingAndStartsWithEmptyStatistics)
{
    auto replay = player(frames(100), 12.5);
    replay->seek(framePeriod / 2.0);
    EXPECT_EQ(replay->position(), framePeriod / 2.0);
    EXPECT_TRUE(replay->meterModel().liveStatistics().isEmpty());
    EXPECT_FALSE(replay->meterModel().level().has_value());
    EXPECT_EQ(replay->statisticsFramesRead(), 0);
}

TEST_F(PlayerTest, SeekInsideTheGraphWarmUpFeedsEveryFrameFromTheFirst)
{
    const RecordingFrames recorded = frames(800);
    auto replay = player(recorded, 100.0);
    replay->seek(30.0);
    EXPECT_EQ(replay->meterModel().liveStatistics().sampleCount, 240 * 6000);
    EXPECT_EQ(replay->meterModel().liveStatistics(), statisticsUpTo(recorded, 30.0));
    EXPECT_EQ(replay->meterModel().level(), recorded.frame(239, false)->interval.level);
    EXPECT_EQ(replay->statisticsFramesRead(), 0);
}

TEST_F(PlayerTest, SeekFarInShowsTheStatisticsOfHavingPlayedUpToThere)
{
    const RecordingFrames recorded = frames(2000);
    auto replay = player(recorded, 250.0, {}, 10.0);
    replay->seek(200.0);
    const LevelStatistics expected = statisticsUpTo(recorded, 200.0);
    const LevelStatistics& shown = replay->meterModel().liveStatistics();
    EXPECT_EQ(shown.sampleCount, expected.sampleCount);
    EXPECT_NEAR(*shown.leq(), *expected.leq(), 1e-9);
    EXPECT_EQ(shown.maxLevel, expected.maxLevel);
    // Frames before the graph's length plus a second are added up, not fed: (i + 1) / 8 <= 189.
    EXPECT_EQ(replay->statisticsFramesRead(), 1512);
}

TEST_F(PlayerTest, SeekBeyondTheDurationLandsAtTheDurationAndFeedsAllFrames)
{
    const RecordingFrames recorded = frames(100);
    auto replay = player(recorded, std::nullopt);
    replay->seek(1e6);
    EXPECT_EQ(replay->duration(), audioTimeOf(99));
    EXPECT_EQ(replay->position(), audioTimeOf(99));
    EXPECT_EQ(replay->meterModel().liveStatistics().sampleCount, 100 * 6000);
}

TEST_F(PlayerTest, SeekBelowZeroLandsAtZero)
{
    auto replay = player(frames(100), 12.5);
    replay->seek(5.0);
    replay->skip(-10.0);
    EXPECT_EQ(replay->position(), 0.0);
    EXPECT_TRUE(replay->meterModel().liveStatistics().isEmpty());
}

TEST_F(PlayerTest, StatisticsBefore600WithoutTheOverviewReadEach600Frames)
{
    auto replay = player(frames(1300), 162.5);
    ASSERT_FALSE(replay->hasOverview());
    const std::int64_t before = replay->statisticsFramesRead();
    const LevelStatistics statistics = replay->statistics(600);
    EXPECT_EQ(replay->statisticsFramesRead() - before, 600);
    EXPECT_EQ(statistics.sampleCount, 600 * 6000);
}

TEST_F(PlayerTest, StatisticsBefore600WithTheOverviewReadNoFrame)
{
    const RecordingFrames recorded = frames(1300);
    auto replay = player(recorded, 162.5);
    finishOverview();
    ASSERT_TRUE(replay->hasOverview());
    const std::int64_t before = replay->statisticsFramesRead();
    const LevelStatistics statistics = replay->statistics(600);
    EXPECT_EQ(replay->statisticsFramesRead() - before, 0);
    EXPECT_EQ(statistics, statisticsUpTo(recorded, audioTimeOf(599)));
}

TEST_F(PlayerTest, StatisticsWithTheOverviewReadOnlyFromTheNearestCheckpoint)
{
    const RecordingFrames recorded = frames(1300);
    auto replay = player(recorded, 162.5);
    finishOverview();
    const std::int64_t before = replay->statisticsFramesRead();
    const LevelStatistics statistics = replay->statistics(1250);
    EXPECT_EQ(replay->statisticsFramesRead() - before, 50);
    EXPECT_EQ(statistics.sampleCount, 1250 * 6000);
    EXPECT_NEAR(*statistics.leq(), *statisticsUpTo(recorded, audioTimeOf(1249)).leq(), 1e-9);
}

TEST_F(PlayerTest, StatisticsSkipFramesWithoutSamples)
{
    QByteArray bytes = RecordingFormat::header();
    for (std::int64_t index = 0; index < 3; ++index) {
        MeasurementInterval silent = interval(80.0);
        if (index == 1) silent.sampleCount = 0;
        bytes += RecordingFormat::encode({audioTimeOf(index), wallTimeOf(index), silent});
    }
    auto replay = player(RecordingFrames::fromBytes(bytes), std::nullopt);
    const LevelStatistics statistics = replay->statistics(3);
    EXPECT_EQ(statistics.sampleCount, 2 * 6000);
    EXPECT_NEAR(statistics.duration, 0.25, 1e-12);
}

TEST_F(PlayerTest, SeekWithoutFramesOnlyMovesThePosition)
{
    auto replay = player(std::nullopt, 20.0);
    replay->play();
    ASSERT_EQ(sound.playedFrom, std::vector<double> {0.0});
    replay->seek(7.0);
    EXPECT_EQ(replay->position(), 7.0);
    EXPECT_EQ(sound.playedFrom, std::vector<double> {0.0});
}
