#include <QSignalSpy>

#include "StationFixture.h"
#include "views/main/MonitorModel.h"

using namespace ostrel;

class MonitorModelTest : public testsupport::StationFixture { };

TEST_F(MonitorModelTest, ADeniedMicrophoneReplacesTheReadout)
{
    auto model = make(AppModel::Mode::live);
    backend->permission = false;
    MonitorModel monitor;
    monitor.setAppModel(model.get());
    EXPECT_TRUE(monitor.showsReadout());
    settle();
    ASSERT_EQ(model->audio().status(), AudioInput::Status::permissionDenied);
    EXPECT_FALSE(monitor.showsReadout());
    EXPECT_FALSE(monitor.showsNoSignalText());
}

TEST_F(MonitorModelTest, TheNoSignalLineFollowsTheMeter)
{
    auto model = make(AppModel::Mode::inert);
    MonitorModel monitor;
    monitor.setAppModel(model.get());
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
    monitor.setAppModel(model.get());
    QSignalSpy changes(&monitor, &MonitorModel::showsGraphChanged);
    EXPECT_TRUE(monitor.showsGraph());
    model->settings().setShowModeShowsGraph(false);
    EXPECT_FALSE(monitor.showsGraph());
    EXPECT_EQ(changes.count(), 1);
}
