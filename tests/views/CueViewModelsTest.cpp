#include <QSignalSpy>

#include "ViewSources.h"
#include "qlab/QLabSettings.h"
#include "settings/SettingsStore.h"
#include "views/qlab/CueText.h"
#include "views/qlab/CurrentCueModel.h"
#include "views/qlab/TimecodeModel.h"

using namespace ostrel;

class CueViewModelsTest : public testsupport::ViewSourcesFixture {
protected:
    QLabCue cue(const QString& number, const QString& name, std::optional<double> duration = {})
    {
        QLabCue result;
        result.id = number + name;
        result.number = number;
        result.name = name;
        result.type = QStringLiteral("Audio");
        result.startedAt = clock;
        result.sampledAt = clock;
        result.actionElapsed = 5.0;
        result.duration = duration;
        return result;
    }

    QLabCue timecodeCue(std::optional<std::int64_t> rateIndex, std::optional<std::int64_t> output)
    {
        QLabCue result = cue("", "");
        result.id = "tc";
        result.type = QStringLiteral("Timecode");
        result.timecodeStart = QStringLiteral("01:00:00:00");
        result.timecodeRateIndex = rateIndex;
        result.timecodeOutputType = output;
        result.actionElapsed = 2.0;
        return result;
    }
};

TEST_F(CueViewModelsTest, EachUnconnectedStateSaysWhyAndOffersItsButton)
{
    using Action = CurrentCueModel::Action;
    EXPECT_EQ(CurrentCueModel::unavailableText(QLabClientState::off), "QLab monitoring is off.");
    EXPECT_EQ(CurrentCueModel::unavailableAction(QLabClientState::off), Action::openSettings);
    EXPECT_EQ(CurrentCueModel::unavailableText(QLabClientState::connecting),
        QString::fromUtf8("Connecting to QLab…"));
    EXPECT_EQ(CurrentCueModel::unavailableAction(QLabClientState::connecting), Action::none);
    EXPECT_EQ(CurrentCueModel::unavailableText(QLabClientState::noWorkspace),
        "Open a workspace in QLab to see cues.");
    EXPECT_EQ(CurrentCueModel::unavailableAction(QLabClientState::noWorkspace), Action::reconnect);
    EXPECT_EQ(CurrentCueModel::unavailableText(QLabClientState::passcodeRequired),
        "QLab needs a passcode for this workspace.");
    EXPECT_EQ(CurrentCueModel::unavailableAction(QLabClientState::passcodeRequired),
        Action::openSettings);
    EXPECT_EQ(CurrentCueModel::unavailableText(QLabClientState::disconnected),
        "QLab isn't currently connected.");
    EXPECT_EQ(CurrentCueModel::unavailableAction(QLabClientState::disconnected), Action::reconnect);

    auto sources = make(AppModel::Mode::inert);
    CurrentCueModel current;
    current.setQlab(&sources->qlab());
    sources->qlab().simulate(QLabClientState::disconnected, std::nullopt, {});
    EXPECT_TRUE(current.showsUnavailable());
    EXPECT_EQ(current.unavailableAction(), "Reconnect");
    EXPECT_TRUE(current.hasUnavailableAction());
    sources->qlab().simulate(QLabClientState::off, std::nullopt, {});
    EXPECT_EQ(current.unavailableAction(), QString::fromUtf8("QLab Settings…"));
    QSignalSpy settings(&current, &CurrentCueModel::settingsRequested);
    current.performUnavailableAction();
    EXPECT_EQ(settings.count(), 1);
}

TEST_F(CueViewModelsTest, TheFirstCueIsShownWithTheOthersListed)
{
    auto sources = make(AppModel::Mode::inert);
    CurrentCueModel current;
    current.setClock([this] { return clock; });
    current.setQlab(&sources->qlab());
    sources->qlab().simulate(QLabClientState::connected, QStringLiteral("Show"),
        {cue("14", "Overture", 65.0), cue("", "House out"), cue("12", "Preshow")});
    EXPECT_FALSE(current.showsUnavailable());
    ASSERT_TRUE(current.hasCue());
    EXPECT_EQ(current.number(), "14");
    EXPECT_EQ(current.name(), "Overture");
    EXPECT_EQ(current.othersText(), "Also playing: House out and 12 Preshow");
    EXPECT_EQ(current.othersCountText(), "2 more playing");
    EXPECT_EQ(current.playingText(), "Playing");
    EXPECT_EQ(current.elapsedText(), "0:05");
    EXPECT_EQ(current.remainingText(), "1:00");
    EXPECT_TRUE(current.isRedrawing());

    // Times move by themselves.
    clock = addingSeconds(clock, 3.0);
    current.tick();
    EXPECT_EQ(current.elapsedText(), "0:08");
    EXPECT_EQ(current.remainingText(), "0:57");
}

TEST_F(CueViewModelsTest, ACueWithoutDurationShowsNoRemainingTime)
{
    auto sources = make(AppModel::Mode::inert);
    CurrentCueModel current;
    current.setClock([this] { return clock; });
    current.setQlab(&sources->qlab());
    QLabCue paused = cue("3", "Rain");
    paused.isPaused = true;
    sources->qlab().simulate(QLabClientState::connected, QStringLiteral("Show"), {paused});
    EXPECT_FALSE(current.hasRemaining());
    EXPECT_EQ(current.remainingText(), "");
    EXPECT_EQ(current.playingText(), "Paused");
    EXPECT_FALSE(current.hasOthers());
}

TEST_F(CueViewModelsTest, WhileOnlyATimecodeCueRunsNoCueIsPlayingAndTheTimecodeShows)
{
    auto sources = make(AppModel::Mode::inert);
    QSettings scratch(folder.filePath("qlab.ini"), QSettings::IniFormat);
    SettingsStore store(scratch);
    QLabSettings settings(store);
    CurrentCueModel current;
    current.setQlab(&sources->qlab());
    TimecodeModel timecode;
    timecode.setClock([this] { return clock; });
    timecode.setQlab(&sources->qlab());
    timecode.setSettings(&settings);
    EXPECT_FALSE(timecode.isShown());

    sources->qlab().simulate(
        QLabClientState::connected, QStringLiteral("Show"), {timecodeCue(1, 1)});
    EXPECT_FALSE(current.hasCue());
    EXPECT_FALSE(current.showsUnavailable());
    EXPECT_EQ(current.noCueText(), "No cue playing");
    ASSERT_TRUE(timecode.isShown());
    EXPECT_EQ(timecode.caption(), "TIMECODE");
    // Two seconds into a cue that starts at one hour, at 25 fps.
    EXPECT_EQ(timecode.valueText(), "01:00:02:00");
    EXPECT_EQ(timecode.detailsText(), QString::fromUtf8("25 fps · LTC"));
    EXPECT_TRUE(timecode.isRedrawing());
    clock = addingSeconds(clock, 0.5);
    timecode.tick();
    EXPECT_EQ(timecode.valueText(), "01:00:02:12");
}

TEST_F(CueViewModelsTest, AnUnknownRateIndexReadsAsTheAssumedFallback)
{
    QLabCue unknown = timecodeCue(99, 0);
    EXPECT_EQ(TimecodeModel::details(unknown, TimecodeRate::fps25),
        QString::fromUtf8("25 fps (assumed) · MTC"));
    QLabCue none = timecodeCue(std::nullopt, std::nullopt);
    none.isPaused = true;
    EXPECT_EQ(TimecodeModel::details(none, TimecodeRate::fps2997Drop),
        QString::fromUtf8("29.97 fps drop (assumed) · Paused"));
}

TEST_F(CueViewModelsTest, AnOutputTypeOf2ShowsNoOutputPart)
{
    EXPECT_EQ(TimecodeModel::details(timecodeCue(2, 2), TimecodeRate::fps25), "30 fps");
}

TEST_F(CueViewModelsTest, ATimecodeWithoutAnEstimateShowsDashes)
{
    QLabCue unreadable = timecodeCue(1, 0);
    unreadable.timecodeStart = QStringLiteral("a:b:c");
    EXPECT_EQ(TimecodeModel::value(unreadable, clock, TimecodeRate::fps25), "--:--:--:--");
}

TEST_F(CueViewModelsTest, RunningTimesAreWrittenAsMinutesAndSeconds)
{
    EXPECT_EQ(CueText::duration(0.0), "0:00");
    EXPECT_EQ(CueText::duration(-4.0), "0:00");
    EXPECT_EQ(CueText::duration(42.9), "0:42");
    EXPECT_EQ(CueText::duration(725.0), "12:05");
    EXPECT_EQ(CueText::duration(3723.0), "1:02:03");
}
