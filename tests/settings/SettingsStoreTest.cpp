#include <gtest/gtest.h>

#include <QSignalSpy>

#include "SettingsFixture.h"
#include "model/DisplaySettings.h"
#include "sessions/SessionSettings.h"

using namespace ostrel;
using namespace std::chrono_literals;

namespace {

class SettingsStoreTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(SettingsStoreTest, ASliderDragReachesTheDiskOnceAfterTheSyncDelay)
{
    SettingsStore& store = open(300ms);
    DisplaySettings display(store);
    // One assignment per turn of the event loop, as mouse moves arrive.
    for (int step = 0; step <= 40; ++step) {
        display.setScreenBrightness(1.0 - step * 0.01);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(display.screenBrightness(), 0.6);
    EXPECT_EQ(store.syncCount(), 0);
    EXPECT_FALSE(onDisk("screenBrightness").isValid());

    ASSERT_TRUE(waitFor([&] { return store.syncCount() > 0; }));
    EXPECT_EQ(store.syncCount(), 1);
    EXPECT_DOUBLE_EQ(onDisk("screenBrightness").toDouble(), 0.6);
}

TEST_F(SettingsStoreTest, ALongDragIsWrittenEverySyncDelayNotOnlyAtTheEnd)
{
    SettingsStore& store = open(50ms);
    DisplaySettings display(store);
    QElapsedTimer dragging;
    dragging.start();
    int step = 0;
    while (dragging.elapsed() < 400) {
        display.setGraphDuration(10.0 + ++step);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    EXPECT_GE(store.syncCount(), 2);
    // Far fewer disk writes than assignments.
    EXPECT_LT(store.syncCount(), step / 2);
}

TEST_F(SettingsStoreTest, PendingWritesReachTheFileWhenTheStoreGoes)
{
    {
        SettingsStore& store = open(1h);
        SessionSettings sessions(store);
        sessions.setRecordsSessions(false);
        EXPECT_FALSE(onDisk("recordsSessions").isValid());
        current.reset();
    }
    EXPECT_EQ(onDisk("recordsSessions").toString(), "false");
}

TEST_F(SettingsStoreTest, PendingWritesReachTheFileWhenTheApplicationQuits)
{
    SettingsStore& store = open(1h);
    SessionSettings sessions(store);
    sessions.setRecordsLevelHistory(false);
    QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection);
    EXPECT_EQ(onDisk("recordsLevelHistory").toString(), "false");
}

TEST_F(SettingsStoreTest, AGroupAnnouncesAChangeOncePerTurnAfterEveryValueIsIn)
{
    DisplaySettings display(open());
    QSignalSpy changed(&display, &SettingsGroup::changed);
    double seen = 0.0;
    QObject::connect(&display, &SettingsGroup::changed, [&] { seen = display.graphDuration(); });
    display.setGraphDuration(30.0);
    display.setGraphDuration(45.0);
    display.setHighThreshold(99.0);
    EXPECT_EQ(changed.count(), 0);
    settle();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(seen, 45.0);
}

TEST_F(SettingsStoreTest, AssigningAnUnchangedValueAnnouncesNothing)
{
    DisplaySettings display(open());
    QSignalSpy changed(&display, &SettingsGroup::changed);
    display.setGraphDuration(60.0);
    display.setUnhingedMode(false);
    settle();
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(SettingsStoreTest, ValuesUnderAListOrAMapReadAsTheDefault)
{
    storeRaw("graphDuration", QStringList {"1", "2"});
    EXPECT_EQ(DisplaySettings(open()).graphDuration(), 60.0);
}
