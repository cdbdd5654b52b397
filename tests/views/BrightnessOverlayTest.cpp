#include <QKeySequence>
#include <QSignalSpy>

#include "ViewSources.h"
#include "views/main/BrightnessOverlay.h"

using namespace ostrel;

class BrightnessOverlayTest : public testsupport::ViewSourcesFixture { };

TEST_F(BrightnessOverlayTest, FullBrightnessLeavesTheWindowClear)
{
    auto model = make(AppModel::Mode::inert);
    model->display().setScreenBrightness(1.0);
    BrightnessOverlay overlay;
    show(overlay, *model);
    EXPECT_EQ(overlay.overlayOpacity(), 0.0);
}

TEST_F(BrightnessOverlayTest, LowestBrightnessIsBlackAtEightTenths)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    model->display().setScreenBrightness(0.2);
    EXPECT_NEAR(overlay.overlayOpacity(), 0.8, 1e-12);
    EXPECT_FALSE(overlay.canDim());
    EXPECT_TRUE(overlay.canBrighten());
}

TEST_F(BrightnessOverlayTest, TheSliderCannotTakeTheScreenAway)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    overlay.setBrightness(0.05);
    EXPECT_EQ(model->display().screenBrightness(), 0.2);
    EXPECT_NEAR(overlay.overlayOpacity(), 0.8, 1e-12);
    EXPECT_EQ(overlay.minimum(), 0.2);
    EXPECT_EQ(overlay.maximum(), 1.0);
}

TEST_F(BrightnessOverlayTest, BrighterFromNinetyFivePercentReachesFullAndStops)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    model->display().setScreenBrightness(0.95);
    ASSERT_TRUE(overlay.canBrighten());
    overlay.brighter();
    EXPECT_EQ(model->display().screenBrightness(), 1.0);
    EXPECT_FALSE(overlay.canBrighten());
}

TEST_F(BrightnessOverlayTest, DimmerFromAQuarterReachesTheFloorAndStops)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    model->display().setScreenBrightness(0.25);
    overlay.dimmer();
    EXPECT_EQ(model->display().screenBrightness(), 0.2);
    EXPECT_FALSE(overlay.canDim());
}

TEST_F(BrightnessOverlayTest, SpokenValueIsTheRoundedPercentage)
{
    EXPECT_EQ(BrightnessOverlay::accessibleValue(0.456), "46 percent");
    EXPECT_EQ(BrightnessOverlay::accessibleValue(1.0), "100 percent");
    EXPECT_EQ(BrightnessOverlay::accessibleValue(0.2), "20 percent");
}

TEST_F(BrightnessOverlayTest, HelpTextNamesTheShortcutsAsThisPlatformWritesThem)
{
    BrightnessOverlay overlay;
    EXPECT_EQ(overlay.helpText(), "Screen brightness (Ctrl+Alt+Up / Ctrl+Alt+Down)");
    EXPECT_EQ(overlay.accessibleName(), "Screen brightness");
}

TEST_F(BrightnessOverlayTest, ShortcutsAreCtrlAltUpAndDown)
{
    BrightnessOverlay overlay;
    EXPECT_EQ(QKeySequence(overlay.brighterSequence(), QKeySequence::PortableText),
        QKeySequence(QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_Up)));
    EXPECT_EQ(QKeySequence(overlay.dimmerSequence(), QKeySequence::PortableText),
        QKeySequence(QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_Down)));
}

TEST_F(BrightnessOverlayTest, FollowsTheSettingAndNotifiesOncePerChange)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    QSignalSpy changes(&overlay, &BrightnessOverlay::brightnessChanged);
    model->display().setScreenBrightness(0.5);
    model->display().setScreenBrightness(0.5);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(overlay.brightness(), 0.5);
    EXPECT_EQ(overlay.accessibleValue(), "50 percent");
}

TEST_F(BrightnessOverlayTest, WithoutDisplaySettingsTheWindowStaysClear)
{
    auto model = make(AppModel::Mode::inert);
    model->display().setScreenBrightness(0.3);
    BrightnessOverlay overlay;
    show(overlay, *model);
    ASSERT_NEAR(overlay.overlayOpacity(), 0.7, 1e-12);
    model.reset();
    EXPECT_EQ(overlay.display(), nullptr);
    EXPECT_EQ(overlay.overlayOpacity(), 0.0);
}

TEST_F(BrightnessOverlayTest, TheSliderRunsInWholePercentSoItsValueIsWhatIsSpoken)
{
    auto model = make(AppModel::Mode::inert);
    BrightnessOverlay overlay;
    show(overlay, *model);
    EXPECT_EQ(overlay.minimumPercent(), 20);
    EXPECT_EQ(overlay.maximumPercent(), 100);
    model->display().setScreenBrightness(0.456);
    EXPECT_EQ(overlay.percent(), 46);
    EXPECT_EQ(overlay.accessibleValue(), "46 percent");
    overlay.setPercent(60);
    EXPECT_EQ(model->display().screenBrightness(), 0.6);
    EXPECT_EQ(overlay.percent(), 60);
    EXPECT_EQ(overlay.accessibleValue(), "60 percent");
    overlay.setPercent(5);
    EXPECT_EQ(overlay.percent(), 20);
}
