#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "model/DisplaySettings.h"

using namespace ostrel;

namespace {

class DisplaySettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(DisplaySettingsTest, BrightnessIsClampedOnAssignmentInTheStoreAndAtLaunch)
{
    SettingsStore& store = open();
    DisplaySettings display(store);
    display.setScreenBrightness(0.05);
    EXPECT_EQ(display.screenBrightness(), 0.2);
    store.flush();
    EXPECT_EQ(onDisk("screenBrightness").toDouble(), 0.2);
    display.setScreenBrightness(5.0);
    EXPECT_EQ(display.screenBrightness(), 1.0);
    store.flush();
    EXPECT_EQ(onDisk("screenBrightness").toDouble(), 1.0);
    display.setScreenBrightness(0.6);
    EXPECT_EQ(display.screenBrightness(), 0.6);

    store.flush();
    storeRaw("screenBrightness", 0.0);
    EXPECT_EQ(DisplaySettings(open()).screenBrightness(), 0.2);
}

TEST_F(DisplaySettingsTest, AClampThatChangesNothingTellsNoOne)
{
    DisplaySettings display(open());
    display.setScreenBrightness(0.2);
    int notified = 0;
    QObject::connect(&display, &DisplaySettings::screenBrightnessChanged, [&] { ++notified; });
    display.setScreenBrightness(0.05);
    EXPECT_EQ(notified, 0);
}

TEST_F(DisplaySettingsTest, LevelRangesWithTheDefaultThresholds)
{
    const DisplaySettings display(open());
    EXPECT_EQ(display.levelRange(85.0), LevelRange::elevated);
    EXPECT_EQ(display.levelRange(95.0), LevelRange::high);
    EXPECT_EQ(display.levelRange(84.99), LevelRange::normal);
}

TEST_F(DisplaySettingsTest, CrossedThresholdsPutALevelBetweenThemInTheHighRange)
{
    DisplaySettings display(open());
    display.setElevatedThreshold(100.0);
    display.setHighThreshold(90.0);
    EXPECT_EQ(display.levelRange(95.0), LevelRange::high);
}
