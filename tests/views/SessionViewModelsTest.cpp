#include <gtest/gtest.h>

#include <QSignalSpy>

#include "StationFixture.h"
#include "recording/RecordingLibrary.h"
#include "views/components/Theme.h"
#include "views/sessions/CueHistoryModel.h"
#include "views/sessions/NewSessionModel.h"
#include "views/sessions/SessionButtonModel.h"
#include "views/sessions/SessionCommands.h"
#include "views/sessions/SessionSummaryModel.h"

using namespace ostrel;

namespace {

class SessionViewModels : public testsupport::StationFixture { };

QLabCue cue(const QString& number, const QString& name)
{
    QLabCue result;
    result.id = name;
    result.number = number;
    result.name = name;
    result.type = QStringLiteral("Audio");
    return result;
}

} // namespace

TEST(NewSessionSheet, TheExplanationSaysWhetherAudioIsRecorded)
{
    EXPECT_EQ(NewSessionModel::explanation(true),
        "Ostrel Live records the microphone's audio, the level, the spectrum and every cue until "
        "you end the session, so you can replay the show afterwards.");
    EXPECT_EQ(NewSessionModel::explanation(false),
        "Ostrel Live records each cue and its sound level until you end the session. No audio is "
        "recorded.");
}

TEST(NewSessionSheet, BelowFourHoursOfSpaceTheEstimateWarnsInOrange)
{
    const auto hours = [](double value) {
        return static_cast<qint64>(value * static_cast<double>(RecordingLibrary::bytesPerHour));
    };
    const auto short_ = NewSessionModel::estimate(true, hours(3.9));
    ASSERT_TRUE(short_);
    EXPECT_EQ(short_->symbol, "exclamationmark.triangle.fill");
    EXPECT_EQ(short_->colorRole, static_cast<int>(Theme::Role::orange));
    EXPECT_TRUE(short_->text.endsWith(" free, enough for about 3 hours of recording."));
    const auto enough = NewSessionModel::estimate(true, hours(4.0));
    ASSERT_TRUE(enough);
    EXPECT_EQ(enough->symbol, "internaldrive");
    EXPECT_EQ(enough->colorRole, static_cast<int>(Theme::Role::secondary));
}

TEST(NewSessionSheet, WithoutRecordingOrAKnownFreeSpaceThereIsNoEstimate)
{
    EXPECT_FALSE(NewSessionModel::estimate(false, 1'000'000'000'000));
    EXPECT_FALSE(NewSessionModel::estimate(true, std::nullopt));
}

TEST(NewSessionSheet, TheEstimateReadsInWholeHoursOrBelowAnHourInMinutes)
{
    EXPECT_EQ(NewSessionModel::hours(5.7), "5 hours");
    EXPECT_EQ(NewSessionModel::hours(1.2), "1 hour");
    EXPECT_EQ(NewSessionModel::hours(0.75), "45 minutes");
    EXPECT_EQ(NewSessionModel::hours(0.0), "0 minutes");
}

TEST(NewSessionSheet, FreeSpaceIsWrittenInDecimalFileUnits)
{
    const auto estimate = NewSessionModel::estimate(true, 512'300'000'000);
    ASSERT_TRUE(estimate);
    EXPECT_TRUE(estimate->text.startsWith("512.3 GB free")) << estimate->text.toStdString();
}

TEST_F(SessionViewModels, TheSheetFollowsTheRecordingSwitch)
{
    auto model = make(AppModel::Mode::inert);
    NewSessionModel sheet;
    sheet.setAppModel(model.get());
    EXPECT_EQ(sheet.explanation(), NewSessionModel::explanation(true));
    model->settings().sessions().setRecordsSessions(false);
    EXPECT_EQ(sheet.explanation(), NewSessionModel::explanation(false));
    EXPECT_FALSE(sheet.showsEstimate());
}

TEST_F(SessionViewModels, StartingFromTheSheetStartsTheShowAndClosesTheSheet)
{
    auto model = make(AppModel::Mode::inert);
    NewSessionModel sheet;
    sheet.setAppModel(model.get());
    model->requestNewSession();
    ASSERT_TRUE(model->isPresentingNewSession());
    sheet.start("  Friday ");
    EXPECT_FALSE(model->isPresentingNewSession());
    ASSERT_TRUE(model->hasActiveSession());
    EXPECT_EQ(model->sessions().activeSession()->name, "Friday");
}

TEST_F(SessionViewModels, AnEmptySessionSummaryCountsNoCuesAndDashesTheLevels)
{
    auto model = make(AppModel::Mode::inert);
    model->start();
    SessionSummaryModel summary;
    summary.setAppModel(model.get());
    EXPECT_FALSE(summary.isPresented());
    model->startSession("Evening");
    model->endSession();
    ASSERT_TRUE(summary.isPresented());
    EXPECT_EQ(summary.name(), "Evening");
    EXPECT_EQ(summary.measuredWith(), "Measured with A / Fast weighting.");
    EXPECT_EQ(summary.cuesText(), "0");
    EXPECT_EQ(summary.maximumText(), QString::fromUtf8("\u2014"));
    EXPECT_EQ(summary.averageText(), QString::fromUtf8("\u2014"));
    EXPECT_FALSE(summary.hasWarning());
    summary.done();
    EXPECT_FALSE(summary.isPresented());
}

TEST_F(SessionViewModels, TheSummaryShowsTheShowsFigures)
{
    auto model = make(AppModel::Mode::inert);
    SessionSummaryModel summary;
    summary.setAppModel(model.get());
    model->startSession("Evening");
    model->qlab().simulate(QLabClientState::connected, "Show", {cue("1", "Overture")});
    feed(*model, 80.0, 75.0);
    model->qlab().simulate(QLabClientState::connected, "Show", {});
    model->endSession();
    EXPECT_EQ(summary.cuesText(), "1");
    EXPECT_EQ(summary.averageText(), "80.0");
    EXPECT_EQ(summary.maximumText(), "81.0");
}

TEST_F(SessionViewModels, NewAndEndSessionAreEnabledOneAtATime)
{
    auto model = make(AppModel::Mode::inert);
    SessionCommands commands;
    commands.setAppModel(model.get());
    EXPECT_TRUE(commands.canStartSession());
    EXPECT_FALSE(commands.canEndSession());
    model->startSession("Evening");
    EXPECT_FALSE(commands.canStartSession());
    EXPECT_TRUE(commands.canEndSession());
}

TEST_F(SessionViewModels, ExportIsDisabledBeforeTheFirstShowAndStaysEnabledAfterIt)
{
    auto model = make(AppModel::Mode::inert);
    SessionCommands commands;
    commands.setAppModel(model.get());
    EXPECT_FALSE(commands.canExport());
    EXPECT_FALSE(commands.prepareExport(false));
    model->startSession("Opening Night");
    model->endSession();
    EXPECT_TRUE(commands.canExport());
    ASSERT_TRUE(commands.prepareExport(false));
    EXPECT_EQ(commands.proposedFileName(), QString::fromUtf8("Opening Night \u2013 Cues.csv"));
    EXPECT_TRUE(commands.proposedFile().toLocalFile().endsWith(commands.proposedFileName()));
    ASSERT_TRUE(commands.prepareExport(true, true));
    EXPECT_EQ(commands.proposedFileName(), QString::fromUtf8("Opening Night \u2013 Levels.csv"));
}

TEST_F(SessionViewModels, AnExportThroughTheDialogWritesTheFile)
{
    auto model = make(AppModel::Mode::inert);
    SessionCommands commands;
    commands.setAppModel(model.get());
    model->startSession("Evening");
    model->endSession();
    ASSERT_TRUE(commands.prepareExport(false));
    const QString path = folder.filePath("cues.csv");
    EXPECT_TRUE(commands.exportTo(QUrl::fromLocalFile(path)));
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(SessionViewModels, TheCueHistoryIsEmptyUntilACueFinishes)
{
    auto model = make(AppModel::Mode::inert);
    CueHistoryModel history;
    history.setSessions(&model->sessions());
    EXPECT_TRUE(history.isEmpty());
    EXPECT_EQ(history.emptyTitle(), "No Cues Yet");
    EXPECT_EQ(history.emptyText(), "Cues appear here when they finish playing in QLab.");

    model->qlab().simulate(QLabClientState::connected, "Show", {cue("1", "Overture")});
    feed(*model, 80.0, 2.0);
    model->qlab().simulate(QLabClientState::connected, "Show", {cue("", "Thunder")});
    feed(*model, 70.0, 1.0);
    model->qlab().simulate(QLabClientState::connected, "Show", {});
    ASSERT_EQ(history.rowCount(), 2);
    EXPECT_FALSE(history.isEmpty());
    // Newest first.
    EXPECT_EQ(history.data(history.index(0), CueHistoryModel::nameRole).toString(), "Thunder");
    EXPECT_EQ(history.data(history.index(0), CueHistoryModel::numberRole).toString(), "");
    EXPECT_EQ(history.data(history.index(1), CueHistoryModel::numberRole).toString(), "1");
    EXPECT_EQ(
        history.headers(), QStringList({"Cue", "Name", "Started", "Duration", "Peak", "Leq"}));
}

TEST(SessionButton, TheRunningTimeReadsInHoursMinutesAndSeconds)
{
    EXPECT_EQ(SessionButtonModel::elapsed(42.9), "0:00:42");
    EXPECT_EQ(SessionButtonModel::elapsed(3723.0), "1:02:03");
}

TEST_F(SessionViewModels, TheSessionButtonStartsAShowAndDuringOneShowsItsTimeAndEndsIt)
{
    auto model = make(AppModel::Mode::inert);
    SessionButtonModel button;
    button.setAppModel(model.get());
    EXPECT_FALSE(button.isRunning());
    EXPECT_EQ(button.helpText(), "Start a new show session (Ctrl+N)");
    button.trigger();
    EXPECT_TRUE(model->isPresentingNewSession());

    model->setPresentingNewSession(false);
    model->startSession("Friday");
    const Date start = model->sessions().activeSession()->start;
    button.setClock([start] { return addingSeconds(start, 125.4); });
    EXPECT_TRUE(button.isRunning());
    EXPECT_EQ(button.elapsedText(), "0:02:05");
    EXPECT_EQ(button.helpText(), QString::fromUtf8("End \u201CFriday\u201D"));
    EXPECT_EQ(button.accessibleName(), "End session Friday");
    button.trigger();
    EXPECT_FALSE(model->hasActiveSession());
    EXPECT_TRUE(model->presentedSummary());
    EXPECT_FALSE(button.isRunning());
}
