// The station's own commands: the meter's reset, Brighter and Dimmer within their bounds, and the
// update check that only a station with an updater offers.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "StationFixture.h"
#include "views/main/StationCommands.h"

using namespace ostrel;

class StationCommandsTest : public testsupport::StationFixture { };

TEST_F(StationCommandsTest, BrighterAtNinetyFivePercentGivesFullAndThenDisables)
{
    auto model = make(AppModel::Mode::inert);
    StationCommands commands;
    commands.setAppModel(model.get());
    model->settings().display().setScreenBrightness(0.95);
    EXPECT_TRUE(commands.canBrighten());
    QSignalSpy changed(&commands, &StationCommands::changed);
    commands.brighter();
    EXPECT_DOUBLE_EQ(model->settings().display().screenBrightness(), 1.0);
    EXPECT_FALSE(commands.canBrighten());
    EXPECT_TRUE(commands.canDim());
    EXPECT_GE(changed.size(), 1);
}

TEST_F(StationCommandsTest, DimmerAtAQuarterGivesTheDimmestAndThenDisables)
{
    auto model = make(AppModel::Mode::inert);
    StationCommands commands;
    commands.setAppModel(model.get());
    model->settings().display().setScreenBrightness(0.25);
    EXPECT_TRUE(commands.canDim());
    commands.dimmer();
    EXPECT_DOUBLE_EQ(model->settings().display().screenBrightness(), 0.2);
    EXPECT_FALSE(commands.canDim());
    EXPECT_TRUE(commands.canBrighten());
}

TEST_F(StationCommandsTest, StepsOfATenthReachTheBoundsAndStopThere)
{
    auto model = make(AppModel::Mode::inert);
    StationCommands commands;
    commands.setAppModel(model.get());
    model->settings().display().setScreenBrightness(0.2);
    int steps = 0;
    while (commands.canBrighten() && steps < 20) {
        commands.brighter();
        ++steps;
    }
    EXPECT_EQ(steps, 8);
    EXPECT_NEAR(model->settings().display().screenBrightness(), 1.0, 1e-9);
    steps = 0;
    while (commands.canDim() && steps < 20) {
        commands.dimmer();
        ++steps;
    }
    EXPECT_EQ(steps, 8);
    EXPECT_DOUBLE_EQ(model->settings().display().screenBrightness(), 0.2);
}

TEST_F(StationCommandsTest, ResetPeakAndLeqClearsTheMetersStatistics)
{
    auto model = make(AppModel::Mode::inert);
    StationCommands commands;
    commands.setAppModel(model.get());
    feed(*model, 90.0, 1.0);
    ASSERT_TRUE(model->meter().statistics().leq().has_value());
    commands.resetPeakAndLeq();
    EXPECT_FALSE(model->meter().statistics().leq().has_value());
}

TEST_F(StationCommandsTest, CheckForUpdatesIsDisabledInDemoModeAndDoesNothing)
{
    auto model = make(AppModel::Mode::demo);
    StationCommands commands;
    commands.setAppModel(model.get());
    EXPECT_FALSE(commands.canCheckForUpdates());
    commands.checkForUpdates();
    EXPECT_FALSE(model->updater().isPresenting());
}

TEST_F(StationCommandsTest, WithoutAStationEveryCommandIsDisabledAndHarmless)
{
    StationCommands commands;
    EXPECT_FALSE(commands.canBrighten());
    EXPECT_FALSE(commands.canDim());
    EXPECT_FALSE(commands.canCheckForUpdates());
    commands.brighter();
    commands.dimmer();
    commands.resetPeakAndLeq();
    commands.checkForUpdates();
}

TEST_F(StationCommandsTest, TheShortcutsAreThePlatformsOwn)
{
    StationCommands commands;
    EXPECT_EQ(commands.resetShortcut(), QKeySequence("Ctrl+K"));
    EXPECT_EQ(commands.brighterShortcut(), QKeySequence("Ctrl+Alt+Up"));
    EXPECT_EQ(commands.dimmerShortcut(), QKeySequence("Ctrl+Alt+Down"));
    EXPECT_EQ(commands.helpShortcut(), QKeySequence("Ctrl+?"));
    EXPECT_EQ(commands.helpKey(), QKeySequence(Qt::Key_F1));
    EXPECT_EQ(commands.settingsShortcut(), QKeySequence("Ctrl+,"));
}
