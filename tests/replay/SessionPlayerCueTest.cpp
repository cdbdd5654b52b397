#include "SessionPlayerTestSupport.h"

using namespace ostrel;
using namespace ostrel::replay_test;

namespace {

std::vector<QString> markerLabels(const SessionPlayer& replay)
{
    std::vector<QString> labels;
    for (const GraphMarker& marker : replay.meterModel().markers())
        labels.push_back(marker.label);
    return labels;
}

} // namespace

TEST_F(PlayerTest, CueExactlyAtAFramesWallTimeGetsItsMarkerWithThatFrame)
{
    const CueRecord atFrame = cue(QStringLiteral("7"), wallTimeOf(3));
    auto replay = player(frames(80), 10.0, {atFrame});
    replay->play();
    sound.heard = audioTimeOf(2);
    replay->tick();
    EXPECT_TRUE(markerLabels(*replay).empty());
    sound.heard = audioTimeOf(3);
    replay->tick();
    ASSERT_EQ(markerLabels(*replay), std::vector<QString> {QStringLiteral("7")});
    EXPECT_EQ(replay->meterModel().markers().front().date, atFrame.start);
    sound.heard = audioTimeOf(4);
    replay->tick();
    EXPECT_EQ(markerLabels(*replay).size(), 1U);
}

TEST_F(PlayerTest, MarkerIsLabelledWithTheCueNameWhenItHasNoNumber)
{
    CueRecord unnumbered = cue(QString(), 1.0);
    unnumbered.name = QStringLiteral("Thunder");
    auto replay = player(frames(80), 10.0, {unnumbered});
    replay->seek(5.0);
    EXPECT_EQ(markerLabels(*replay), std::vector<QString> {QStringLiteral("Thunder")});
}

TEST_F(PlayerTest, SeekingBackwardsPastACuePutsItsMarkerBackWhenTheFramesAreFedAgain)
{
    auto replay = player(frames(80), 10.0, {cue(QStringLiteral("12"), 4.0)});
    replay->seek(6.0);
    EXPECT_EQ(markerLabels(*replay).size(), 1U);
    replay->seek(2.0);
    EXPECT_TRUE(markerLabels(*replay).empty());
    replay->play();
    sound.heard = 5.0;
    replay->tick();
    EXPECT_EQ(markerLabels(*replay), std::vector<QString> {QStringLiteral("12")});
}

TEST_F(PlayerTest, CuePositionsAreTheAudioTimesOfTheirStarts)
{
    const CueRecord onFrame = cue(QStringLiteral("1"), wallTimeOf(3));
    const CueRecord betweenFrames = cue(QStringLiteral("2"), wallTimeOf(5) - 0.05);
    const CueRecord beforeTheFirstFrame = cue(QStringLiteral("3"), 0.1);
    const CueRecord afterTheLastFrame = cue(QStringLiteral("4"), wallTimeOf(79) + 1.0);
    auto replay = player(
        frames(80), 10.0, {afterTheLastFrame, onFrame, beforeTheFirstFrame, betweenFrames});
    const auto& positions = replay->cuePositions();
    EXPECT_EQ(positions.at(onFrame.id), audioTimeOf(3));
    EXPECT_NEAR(positions.at(betweenFrames.id), audioTimeOf(5) - 0.05, 1e-9);
    EXPECT_EQ(positions.at(beforeTheFirstFrame.id), 0.0);
    EXPECT_FALSE(positions.contains(afterTheLastFrame.id));
    EXPECT_EQ(positions.size(), 3U);
}

TEST_F(PlayerTest, WallDateFollowsTheFramesAndRunsOnBetweenThem)
{
    auto replay = player(frames(80), 10.0);
    EXPECT_EQ(
        replay->wallDate(audioTimeOf(10) + 0.05), addingSeconds(showStart, wallTimeOf(10) + 0.05));
    // Before the first frame there is nothing to follow.
    EXPECT_EQ(replay->wallDate(0.1), addingSeconds(showStart, 0.1));
    auto soundOnly = player(std::nullopt, 10.0);
    EXPECT_EQ(soundOnly->wallDate(4.0), addingSeconds(showStart, 4.0));
}

TEST_F(PlayerTest, CurrentCuesAreThoseRunningAtThePosition)
{
    const CueRecord early = cue(QStringLiteral("1"), 1.0, 2.0);
    const CueRecord long_ = cue(QStringLiteral("2"), 2.0, 60.0);
    CueRecord open = cue(QStringLiteral("3"), 4.0);
    open.end.reset();
    auto replay = player(frames(80), 10.0, {open, early, long_});
    replay->seek(audioTimeOf(11)); // wall 2.0
    std::vector<QString> numbers;
    for (const CueRecord& running : replay->currentCues())
        numbers.push_back(running.number);
    EXPECT_EQ(numbers, (std::vector<QString> {QStringLiteral("1"), QStringLiteral("2")}));
    replay->seek(audioTimeOf(27)); // wall 4.0: the first ended at 3.0
    numbers.clear();
    for (const CueRecord& running : replay->currentCues())
        numbers.push_back(running.number);
    EXPECT_EQ(numbers, (std::vector<QString> {QStringLiteral("2"), QStringLiteral("3")}));
}

TEST_F(PlayerTest, JumpToACueSeeksToItsPosition)
{
    const CueRecord target = cue(QStringLiteral("5"), wallTimeOf(40));
    auto replay = player(frames(80), 10.0, {target});
    replay->jump(target);
    EXPECT_EQ(replay->position(), audioTimeOf(40));
}

TEST_F(PlayerTest, JumpToNextCueSkipsTheCueJustReached)
{
    const CueRecord first = cue(QStringLiteral("1"), wallTimeOf(8));
    const CueRecord second = cue(QStringLiteral("2"), wallTimeOf(40));
    auto replay = player(frames(80), 10.0, {second, first});
    replay->jumpToNextCue();
    EXPECT_EQ(replay->position(), audioTimeOf(8));
    replay->jumpToNextCue();
    EXPECT_EQ(replay->position(), audioTimeOf(40));
    replay->jumpToNextCue();
    EXPECT_EQ(replay->position(), audioTimeOf(40));
}

TEST_F(PlayerTest, JumpToPreviousCueThreeSecondsIntoACueGoesToItsStart)
{
    const CueRecord first = cue(QStringLiteral("1"), wallTimeOf(8));
    const CueRecord second = cue(QStringLiteral("2"), wallTimeOf(40));
    auto replay = player(frames(80), 10.0, {first, second});
    replay->seek(audioTimeOf(40) + 3.0);
    replay->jumpToPreviousCue();
    EXPECT_EQ(replay->position(), audioTimeOf(40));
}

TEST_F(PlayerTest, JumpToPreviousCueOneSecondIntoACueGoesToTheCueBefore)
{
    const CueRecord first = cue(QStringLiteral("1"), wallTimeOf(8));
    const CueRecord second = cue(QStringLiteral("2"), wallTimeOf(40));
    auto replay = player(frames(80), 10.0, {first, second});
    replay->seek(audioTimeOf(40) + 1.0);
    replay->jumpToPreviousCue();
    EXPECT_EQ(replay->position(), audioTimeOf(8));
}

TEST_F(PlayerTest, JumpToPreviousCueOneSecondIntoTheFirstCueGoesToZero)
{
    const CueRecord first = cue(QStringLiteral("1"), wallTimeOf(8));
    auto replay = player(frames(80), 10.0, {first});
    replay->seek(audioTimeOf(8) + 1.0);
    replay->jumpToPreviousCue();
    EXPECT_EQ(replay->position(), 0.0);
}

TEST_F(PlayerTest, JumpToPreviousCueBeforeAnyCueGoesToZero)
{
    auto replay = player(frames(80), 10.0, {cue(QStringLiteral("1"), wallTimeOf(40))});
    replay->seek(2.0);
    replay->jumpToPreviousCue();
    EXPECT_EQ(replay->position(), 0.0);
}
