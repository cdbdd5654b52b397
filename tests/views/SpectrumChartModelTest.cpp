#include <QSignalSpy>
#include <cmath>

#include "SpectrumSamples.h"
#include "ViewSources.h"
#include "views/spectrum/SpectrumChartModel.h"

using namespace ostrel;

class SpectrumChartModelTest : public testsupport::ViewSourcesFixture {
protected:
    void feedSpectra(testsupport::ViewSources& sources, double bandLevel, int count)
    {
        for (int i = 0; i < count; ++i) {
            clock = addingSeconds(clock, 0.1);
            sources.meter().ingest(testsupport::spectrumInterval(bandLevel), clock);
        }
    }
};

namespace {

void show(SpectrumChartModel& chart, testsupport::ViewSources& sources)
{
    chart.setMeter(&sources.meter());
    chart.setDisplay(&sources.display());
    chart.setPlotWidth(400.0);
    chart.setPlotHeight(150.0);
}

} // namespace

TEST_F(SpectrumChartModelTest, ThirdOctavesWithNoSpectrumYetShowTheWaitingText)
{
    auto sources = make(AppModel::Mode::inert);
    sources->display().setSpectrumResolution(SpectrumResolution::third);
    SpectrumChartModel chart;
    show(chart, *sources);
    EXPECT_FALSE(chart.hasData());
    EXPECT_EQ(chart.waitingText(), QString::fromUtf8("Waiting for audio…"));
    EXPECT_TRUE(chart.barRects().empty());
    EXPECT_EQ(chart.accessibleValue(), "No signal");

    QSignalSpy arrived(&chart, &SpectrumChartModel::hasDataChanged);
    feedSpectra(*sources, 50.0, 1);
    EXPECT_TRUE(chart.hasData());
    EXPECT_EQ(arrived.count(), 1);
}

TEST_F(SpectrumChartModelTest, TheLevelScaleLeavesHeadroomOverTheHighestPeak)
{
    using Domain = SpectrumChartModel::Domain;
    EXPECT_EQ(SpectrumChartModel::levelDomain({}), (Domain {20.0, 100.0}));
    EXPECT_EQ(SpectrumChartModel::levelDomain({-200.0, -3.0}), (Domain {20.0, 100.0}));
    EXPECT_EQ(SpectrumChartModel::levelDomain({0.0}), (Domain {20.0, 100.0}));
    EXPECT_EQ(SpectrumChartModel::levelDomain({40.0, 88.0}), (Domain {20.0, 100.0}));
    EXPECT_EQ(SpectrumChartModel::levelDomain({40.0, 97.5}), (Domain {30.0, 110.0}));
    // Never under 60 at the top, never under 0 at the bottom.
    EXPECT_EQ(SpectrumChartModel::levelDomain({12.0}), (Domain {0.0, 60.0}));
}

TEST_F(SpectrumChartModelTest, ABarCoversItsFillOfTheBandOnTheLogAxis)
{
    const SpectrumBand band {800.0, 1000.0, 1250.0};
    const auto extent = SpectrumChartModel::barExtent(band, 0.72);
    const double ratio = std::pow(1250.0 / 800.0, 0.14);
    EXPECT_DOUBLE_EQ(extent.lower, 800.0 * ratio);
    EXPECT_DOUBLE_EQ(extent.upper, 1250.0 / ratio);
    EXPECT_NEAR(std::log(extent.upper / extent.lower) / std::log(1250.0 / 800.0), 0.72, 1e-12);
    EXPECT_EQ(SpectrumChartModel::barFill(SpectrumResolution::twentyFourth), 0.8);
    EXPECT_EQ(SpectrumChartModel::barFill(SpectrumResolution::sixth), 0.72);
    EXPECT_EQ(SpectrumChartModel::peakHoldHeight(SpectrumResolution::third), 1.5);
    EXPECT_EQ(SpectrumChartModel::peakHoldHeight(SpectrumResolution::twelfth), 0.5);
}

TEST_F(SpectrumChartModelTest, BarsStandOnTheFloorOnePerBandWithTheirPeakHolds)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrumChartModel chart;
    show(chart, *sources);
    feedSpectra(*sources, 50.0, 10);
    ASSERT_EQ(chart.barRects().size(), 31u);
    ASSERT_EQ(chart.peakRects().size(), 31u);
    for (const QRectF& bar : chart.barRects())
        EXPECT_DOUBLE_EQ(bar.bottom(), 150.0);
    // The 1 kHz band stands out above its neighbours, and bars run left to right.
    EXPECT_LT(chart.barRects()[17].top(), chart.barRects()[16].top());
    EXPECT_LT(chart.barRects()[16].right(), chart.barRects()[17].left());
    EXPECT_TRUE(chart.levelLine().isEmpty());
    EXPECT_EQ(chart.accessibleName(), "1/3 Octave spectrum");
    EXPECT_EQ(chart.accessibleValue(), "Loudest band 1.00 kHz at 70.0 decibels");
}

TEST_F(SpectrumChartModelTest, TheLineStyleDrawsALevelLineAPeakLineAndAnArea)
{
    auto sources = make(AppModel::Mode::inert);
    sources->display().setSpectrumStyle(SpectrumStyle::line);
    sources->display().setSpectrumResolution(SpectrumResolution::twelfth);
    SpectrumChartModel chart;
    show(chart, *sources);
    feedSpectra(*sources, 50.0, 10);
    EXPECT_FALSE(chart.showsBars());
    EXPECT_TRUE(chart.barRects().empty());
    EXPECT_EQ(chart.levelLine().size(), 120);
    EXPECT_EQ(chart.peakLine().size(), 120);
    // The area closes along the floor.
    EXPECT_EQ(chart.area().size(), 122);
    EXPECT_DOUBLE_EQ(chart.area().back().y(), 150.0);
}

TEST_F(SpectrumChartModelTest, TheFrequencyMarksAreTheSameAtEveryResolution)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrumChartModel chart;
    show(chart, *sources);
    const auto labels = [&chart] {
        QStringList texts;
        for (const QVariant& tick : chart.frequencyTicks())
            texts << tick.toMap().value("text").toString();
        return texts;
    };
    EXPECT_EQ(
        labels(), (QStringList {"31", "63", "125", "250", "500", "1k", "2k", "4k", "8k", "16k"}));
    // A narrow plot keeps every mark but labels every other one.
    chart.setPlotWidth(200.0);
    EXPECT_EQ(labels(), (QStringList {"31", "", "125", "", "500", "", "2k", "", "8k", ""}));
    chart.setPlotWidth(400.0);
    sources->display().setSpectrumResolution(SpectrumResolution::twentyFourth);
    EXPECT_EQ(chart.frequencyTicks().size(), 10);
}

TEST_F(SpectrumChartModelTest, HoveringReadsOutTheBandUnderThePointer)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrumChartModel chart;
    show(chart, *sources);
    feedSpectra(*sources, 50.0, 10);
    chart.hover(chart.xFor(1000.0));
    ASSERT_TRUE(chart.hasCursor());
    EXPECT_EQ(chart.cursorText(), QString::fromUtf8("1.00 kHz · 1/3 oct band · 70.0 dB"));
    EXPECT_LE(chart.cursorRect().left(), chart.xFor(1000.0));
    EXPECT_GE(chart.cursorRect().right(), chart.xFor(1000.0));
    chart.clearHover();
    EXPECT_FALSE(chart.hasCursor());
}

TEST_F(SpectrumChartModelTest, ChangingStyleKeepsHistory)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrumChartModel chart;
    show(chart, *sources);
    feedSpectra(*sources, 50.0, 30);
    const auto columns = sources->meter().spectrogram().count();
    const auto bands = sources->meter().display(SpectrumResolution::third);
    ASSERT_EQ(columns, 30);
    sources->display().setSpectrumStyle(SpectrumStyle::spectrogram);
    sources->display().setSpectrumStyle(SpectrumStyle::line);
    EXPECT_EQ(sources->meter().spectrogram().count(), columns);
    EXPECT_EQ(sources->meter().display(SpectrumResolution::third), bands);
    EXPECT_TRUE(chart.hasData());
    EXPECT_EQ(chart.levelLine().size(), 31);
}
