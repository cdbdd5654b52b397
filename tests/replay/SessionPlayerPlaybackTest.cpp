#include "SessionPlayerTestSupport.h"

using namespace ostrel;
using namespace ostrel::replay_test;

TEST_F(PlayerTest, DurationIsTheLongerOfFramesAndSound)
{
    EXPECT_EQ(player(frames(80), 4.0)->duration(), 10.0);
    EXPECT_EQ(player(frames(80), 12.0)->duration(), 12.0);
    EXPECT_EQ(player(std::nullopt, 3.5)->duration(), 3.5);
    EXPECT_EQ(player(std::nullopt, std::nullopt)->duration(), 0.0);
}

TEST_F(PlayerTest, UnreadableMeasurementsAreTheProblemShown)
{
    EXPECT_EQ(player(std::nullopt, 10.0)->problem(),
        QStringLiteral("This recording's measurements couldn't be read."));
}

TEST_F(PlayerTest, MissingSoundIsTheProblemShownWhenFramesReplay)
{
    EXPECT_EQ(player(frames(10), std::nullopt)->problem(),
        QStringLiteral("This recording has no audio. Levels and spectrum still replay."));
    EXPECT_TRUE(player(frames(10), 1.25)->problem().isEmpty());
}

TEST_F(PlayerTest, SoundThatFailsToPlayIsTheProblemAndPlayingGoesOnByTheWallClock)
{
    sound.failsToPlay = true;
    auto replay = player(frames(80), 10.0);
    replay->play();
    EXPECT_EQ(replay->problem(),
        QStringLiteral("The audio couldn't be played. Levels and spectrum still replay."));
    EXPECT_TRUE(replay->isPlaying());
    passes(2.0);
    replay->tick();
    EXPECT_DOUBLE_EQ(replay->position(), 2.0);
}

TEST_F(PlayerTest, PlayStartsTheSoundAtThePosition)
{
    auto replay = player(frames(80), 10.0);
    replay->seek(3.0);
    replay->play();
    EXPECT_TRUE(replay->isPlaying());
    EXPECT_EQ(sound.playedFrom, std::vector<double> {3.0});
}

TEST_F(PlayerTest, PlayAtTheEndRestartsFromZero)
{
    auto replay = player(frames(80), 10.0);
    replay->seek(10.0);
    replay->play();
    EXPECT_EQ(replay->position(), 0.0);
    EXPECT_EQ(sound.playedFrom, std::vector<double> {0.0});
    EXPECT_TRUE(replay->meterModel().liveStatistics().isEmpty());
}

TEST_F(PlayerTest, PlayNearTheEndAlsoRestartsFromZero)
{
    auto replay = player(frames(80), 10.0);
    replay->seek(9.96);
    replay->play();
    EXPECT_EQ(replay->position(), 0.0);
}

TEST_F(PlayerTest, PlayDoesNothingWithoutDuration)
{
    auto replay = player(frames(0), std::nullopt);
    replay->play();
    EXPECT_FALSE(replay->isPlaying());
}

TEST_F(PlayerTest, TickFollowsTheSoundsClockAndFeedsTheFramesUpToIt)
{
    const RecordingFrames recorded = frames(80);
    auto replay = player(recorded, 10.0);
    replay->play();
    sound.heard = 2.5;
    passes(0.033); // the wall clock says otherwise: the sound is the master
    replay->tick();
    EXPECT_EQ(replay->position(), 2.5);
    EXPECT_EQ(replay->meterModel().liveStatistics(), statisticsUpTo(recorded, 2.5));
}

TEST_F(PlayerTest, SoundShorterThanFramesStopsAndThePositionRunsOnByTheWallClock)
{
    const RecordingFrames recorded = frames(80);
    auto replay = player(recorded, 5.0);
    replay->play();
    sound.heard = 4.0;
    replay->tick();
    EXPECT_EQ(replay->position(), 4.0);
    sound.heard = 5.0; // the last sample heard: the sound's clock is no longer below its end
    passes(1.5);
    replay->tick();
    EXPECT_DOUBLE_EQ(replay->position(), 5.5);
    sound.heard.reset(); // and then no sound at all
    passes(2.0);
    replay->tick();
    EXPECT_DOUBLE_EQ(replay->position(), 7.5);
    EXPECT_TRUE(replay->isPlaying());
    passes(60.0);
    replay->tick();
    EXPECT_EQ(replay->position(), 10.0);
    EXPECT_FALSE(replay->isPlaying());
    EXPECT_EQ(replay->meterModel().liveStatistics().sampleCount, 80 * 6000);
}

TEST_F(PlayerTest, PlayingPastTheSoundsEndDoesNotRestartIt)
{
    auto replay = player(frames(80), 5.0);
    replay->seek(6.0);
    replay->play();
    EXPECT_TRUE(replay->isPlaying());
    EXPECT_TRUE(sound.playedFrom.empty());
}

TEST_F(PlayerTest, SeekWhilePlayingRestartsTheSoundThere)
{
    auto replay = player(frames(80), 10.0);
    replay->play();
    replay->seek(6.25);
    EXPECT_EQ(sound.playedFrom, (std::vector<double> {0.0, 6.25}));
    EXPECT_TRUE(replay->isPlaying());
}

TEST_F(PlayerTest, PauseTakesALastStepThenStopsTheSound)
{
    auto replay = player(frames(80), 10.0);
    replay->play();
    sound.heard = 3.0;
    replay->pause();
    EXPECT_EQ(replay->position(), 3.0);
    EXPECT_FALSE(replay->isPlaying());
    EXPECT_FALSE(sound.isPlaying);
    passes(5.0);
    replay->tick();
    EXPECT_EQ(replay->position(), 3.0);
}

TEST_F(PlayerTest, ToggleAlternatesPlayAndPause)
{
    auto replay = player(frames(80), 10.0);
    replay->togglePlayback();
    EXPECT_TRUE(replay->isPlaying());
    replay->togglePlayback();
    EXPECT_FALSE(replay->isPlaying());
}

TEST_F(PlayerTest, VolumeReachesTheSoundAtEveryChange)
{
    auto replay = player(frames(8), 1.0);
    int changes = 0;
    QObject::connect(replay.get(), &SessionPlayer::volumeChanged, [&] { ++changes; });
    replay->setVolume(0.25F);
    EXPECT_EQ(sound.volume, 0.25F);
    EXPECT_EQ(replay->volume(), 0.25F);
    replay->setVolume(0.25F);
    EXPECT_EQ(changes, 1);
}

TEST_F(PlayerTest, PositionIsAnnouncedWhenItChanges)
{
    auto replay = player(frames(80), 10.0);
    int changes = 0;
    QObject::connect(replay.get(), &SessionPlayer::positionChanged, [&] { ++changes; });
    replay->seek(2.0);
    replay->seek(2.0);
    EXPECT_EQ(changes, 1);
}

TEST_F(PlayerTest, MeterIsTheReplaysOwnWithTheGraphLengthGiven)
{
    auto replay = player(frames(8), 1.0, {}, 30.0);
    EXPECT_EQ(replay->meter()->graphDuration(), 30.0);
}

TEST_F(PlayerTest, OverviewIsStoredWhenItsBuildFinishes)
{
    auto replay = player(frames(1300), 162.5);
    int announced = 0;
    QObject::connect(replay.get(), &SessionPlayer::overviewChanged, [&] { ++announced; });
    EXPECT_FALSE(replay->hasOverview());
    finishOverview();
    ASSERT_TRUE(replay->hasOverview());
    EXPECT_EQ(replay->overview()->columns, 1300);
    EXPECT_EQ(replay->overview()->checkpoints.size(), 3U);
    EXPECT_EQ(announced, 1);
}

TEST_F(PlayerTest, OverviewFinishedAfterCloseIsDropped)
{
    auto replay = player(frames(1300), 162.5);
    replay->close();
    finishOverview();
    EXPECT_FALSE(replay->hasOverview());
}

TEST_F(PlayerTest, NoOverviewIsBuiltWithoutFrames)
{
    auto replay = player(std::nullopt, 10.0);
    EXPECT_FALSE(pendingOverview);
}
