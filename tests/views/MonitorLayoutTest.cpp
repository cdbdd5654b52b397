#include <gtest/gtest.h>

#include <QSignalSpy>

#include "views/main/MonitorLayout.h"

using namespace ostrel;

TEST(MonitorLayout, ReferenceWindowHasAScaleOfExactlyOne)
{
    EXPECT_EQ(MonitorLayout::scaleFor(560.0, 720.0), 1.0);
}

TEST(MonitorLayout, NarrowWindowStopsAtTheFloor)
{
    EXPECT_EQ(MonitorLayout::scaleFor(280.0, 720.0), 0.8);
    EXPECT_EQ(MonitorLayout::scaleFor(480.0, 300.0), 0.8);
}

TEST(MonitorLayout, WideWindowFollowsItsHeight)
{
    EXPECT_NEAR(MonitorLayout::scaleFor(3000.0, 2000.0), 2.78, 0.005);
    EXPECT_DOUBLE_EQ(MonitorLayout::scaleFor(3000.0, 2000.0), 2000.0 / 720.0);
}

TEST(MonitorLayout, LargeWindowsStopAtThree)
{
    EXPECT_EQ(MonitorLayout::scaleFor(1680.0, 2160.0), 3.0);
    EXPECT_EQ(MonitorLayout::scaleFor(5120.0, 2880.0), 3.0);
}

TEST(MonitorLayout, DistancesAndFontsGrowWithTheScale)
{
    MonitorLayout layout;
    layout.setWidth(1120.0);
    layout.setHeight(1440.0);
    ASSERT_EQ(layout.scale(), 2.0);
    EXPECT_DOUBLE_EQ(layout.sidePadding(), 72.0);
    EXPECT_DOUBLE_EQ(layout.verticalPadding(), 56.0);
    EXPECT_DOUBLE_EQ(layout.topRowSpacing(), 96.0);
    EXPECT_DOUBLE_EQ(layout.readoutSize(), 264.0);
    EXPECT_DOUBLE_EQ(layout.graphRowHeight(), 300.0);
    EXPECT_DOUBLE_EQ(layout.captionSize(), 24.0);
    EXPECT_DOUBLE_EQ(layout.smallCaptionSize(), 22.0);
    EXPECT_DOUBLE_EQ(layout.captionTracking(), 2.8);
    EXPECT_DOUBLE_EQ(layout.footerSpacing(), 28.0);
    EXPECT_DOUBLE_EQ(layout.graphLineWidth(), 4.0);
}

TEST(MonitorLayout, CappedPartsStopGrowing)
{
    MonitorLayout layout;
    layout.setWidth(1120.0);
    layout.setHeight(1440.0);
    EXPECT_DOUBLE_EQ(layout.footerFontSize(), 14.0 * 1.6);
    EXPECT_DOUBLE_EQ(layout.cornerSidePadding(), 20.0 * 1.6);
    EXPECT_DOUBLE_EQ(layout.bannerScale(), 1.6);
    EXPECT_DOUBLE_EQ(layout.urgentBannerScale(), 1.4);
    EXPECT_DOUBLE_EQ(layout.cornerTopPadding(), 12.0);

    layout.setWidth(700.0);
    layout.setHeight(900.0);
    EXPECT_DOUBLE_EQ(layout.scale(), 1.25);
    EXPECT_DOUBLE_EQ(layout.footerFontSize(), 14.0 * 1.25);
    EXPECT_DOUBLE_EQ(layout.urgentBannerScale(), 1.25);
}

TEST(MonitorLayout, ScaleNotifiesOnlyWhenItChanges)
{
    MonitorLayout layout;
    QSignalSpy scale(&layout, &MonitorLayout::scaleChanged);
    QSignalSpy width(&layout, &MonitorLayout::widthChanged);

    layout.setWidth(560.0);
    EXPECT_EQ(width.count(), 0);
    // Wider alone changes nothing: the height still decides.
    layout.setWidth(1120.0);
    EXPECT_EQ(width.count(), 1);
    EXPECT_EQ(scale.count(), 0);
    layout.setHeight(1440.0);
    EXPECT_EQ(scale.count(), 1);
    EXPECT_EQ(layout.scale(), 2.0);
}

TEST(MonitorLayout, TheToolbarDropsTheSunsBelowTheReferenceWidth)
{
    ostrel::MonitorLayout layout;
    layout.setWidth(480.0);
    EXPECT_FALSE(layout.showsToolbarSymbols());
    layout.setWidth(560.0);
    EXPECT_TRUE(layout.showsToolbarSymbols());
}
