#include <QSignalSpy>

#include "ViewSources.h"
#include "views/main/MonitorModel.h"

using namespace ostrel;

class MonitorModelTest : public testsupport::ViewSourcesFixture { };

TEST_F(MonitorModelTest, ADeniedMicrophoneReplacesTheReadout)
{
    auto model = make(AppModel::Mode::live);
    backend->permission = false;
    MonitorModel monitor;
    show(monitor, *model);
    EXPECT_TRUE(monitor.showsReadout());
    // The station starts its live input once it has started itself.
    model->input().start();
    settle();
    ASSERT_EQ(model->audio().status(), AudioInput::Status::permissionDenied);
    EXPECT_FALSE(monitor.showsReadout());
    EXPECT_FALSE(monitor.showsNoSignalText());
}

TEST_F(MonitorModelTest, TheNoSignalLineFollowsTheMeter)
{
    auto model = make(AppModel::Mode::inert);
    MonitorModel monitor;
    show(monitor, *model);
    EXPECT_FALSE(monitor.showsNoSignalText());
    feed(*model, 30.0, 2.5, -140.0);
    EXPECT_TRUE(monitor.showsNoSignalText());
    EXPECT_EQ(monitor.noSignalText(), "No audio signal detected.");
    feed(*model, 70.0, 0.1);
    EXPECT_FALSE(monitor.showsNoSignalText());
}

TEST_F(MonitorModelTest, TheGraphRowFollowsTheSetting)
{
    auto model = make(AppModel::Mode::inert);
    MonitorModel monitor;
    show(monitor, *model);
    QSignalSpy changes(&monitor, &MonitorModel::showsGraphChanged);
    EXPECT_TRUE(monitor.showsGraph());
    model->display().setShowModeShowsGraph(false);
    EXPECT_FALSE(monitor.showsGraph());
    EXPECT_EQ(changes.count(), 1);
}
