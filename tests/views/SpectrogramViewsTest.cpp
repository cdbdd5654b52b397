#include <QSignalSpy>
#include <algorithm>

#include "SpectrumSamples.h"
#include "ViewSources.h"
#include "views/spectrum/SpectrogramImage.h"
#include "views/spectrum/SpectrogramItem.h"
#include "views/spectrum/SpectrogramModel.h"

using namespace ostrel;

class SpectrogramViewsTest : public testsupport::ViewSourcesFixture {
protected:
    void feedSpectra(testsupport::ViewSources& sources, double bandLevel, int count)
    {
        for (int i = 0; i < count; ++i) {
            clock = addingSeconds(clock, 0.1);
            sources.meter().ingest(testsupport::spectrumInterval(bandLevel), clock);
        }
    }
};

TEST_F(SpectrogramViewsTest, AMaximumOf80Point2DrawsFrom30To90)
{
    EXPECT_EQ(SpectrogramImage::range(80.2f), (SpectrogramImage::Range {30.0, 90.0}));
}

TEST_F(SpectrogramViewsTest, AMaximumOf12DrawsFromMinus10To50)
{
    EXPECT_EQ(SpectrogramImage::range(12.0f), (SpectrogramImage::Range {-10.0, 50.0}));
}

TEST_F(SpectrogramViewsTest, ARingWithNoValueDrawsFrom0To60)
{
    EXPECT_EQ(SpectrogramImage::range(std::nullopt), (SpectrogramImage::Range {0.0, 60.0}));
}

TEST_F(SpectrogramViewsTest, ThePaletteRunsThroughFiveStopsAndFadesInAtTheBottom)
{
    const auto& dark = SpectrogramImage::palette(true);
    const auto& light = SpectrogramImage::palette(false);
    EXPECT_EQ(dark[0], qRgba(0, 0, 0, 0));
    EXPECT_EQ(dark[255], qRgba(0xCD, 0xE2, 0xFB, 255));
    EXPECT_EQ(light[255], qRgba(0x0D, 0x36, 0x6B, 255));
    // Entry 51 (a fifth) is opaque; entry 25 about half faded, premultiplied.
    EXPECT_EQ(qAlpha(dark[51]), 255);
    EXPECT_EQ(qAlpha(dark[25]), static_cast<int>(std::min(5.0 * (25 / 255.0), 1.0) * 255.0));
    EXPECT_LE(qBlue(dark[25]), qAlpha(dark[25]));
    // The middle entry is the middle stop.
    EXPECT_EQ(dark[255 / 2 + 1] & 0xFFFFFF, qRgb(0x39, 0x87, 0xE5) & 0xFFFFFF);
}

TEST_F(SpectrogramViewsTest, ACellNotAboveTheFloorStaysTransparent)
{
    const SpectrogramImage::Range range {30.0, 90.0};
    const auto& palette = SpectrogramImage::palette(true);
    EXPECT_EQ(SpectrogramImage::color(30.0f, range, palette), 0u);
    EXPECT_EQ(SpectrogramImage::color(-200.0f, range, palette), 0u);
    EXPECT_EQ(SpectrogramImage::color(90.0f, range, palette), palette[255]);
    EXPECT_EQ(SpectrogramImage::color(120.0f, range, palette), palette[255]);
    EXPECT_EQ(SpectrogramImage::color(60.0f, range, palette), palette[127]);
}

TEST_F(SpectrogramViewsTest, AnEmptySpectrogramShowsTheWaitingTextAndNoImage)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrogramModel model;
    model.setMeter(&sources->meter());
    SpectrogramItem item;
    item.setMeter(&sources->meter());
    EXPECT_TRUE(model.isEmpty());
    EXPECT_EQ(model.waitingText(), QString::fromUtf8("Waiting for audio…"));
    EXPECT_EQ(SpectrogramImage::make(sources->meter().spectrogram(), true).width(), 1);
    for (int y = 0; y < item.image().height(); ++y)
        for (int x = 0; x < item.image().width(); ++x)
            ASSERT_EQ(qAlpha(item.image().pixel(x, y)), 0);

    feedSpectra(*sources, 50.0, 1);
    EXPECT_FALSE(model.isEmpty());
    EXPECT_EQ(model.accessibleName(), "Spectrogram of the last 60 seconds");
}

TEST_F(SpectrogramViewsTest, EachSpectrumPaintsOneColumnAndNoMore)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrogramItem item;
    item.setMeter(&sources->meter());
    item.setDark(true);
    feedSpectra(*sources, 50.0, 3);
    const int repaints = item.fullRepaints();
    const int painted = item.paintedColumns();
    feedSpectra(*sources, 50.0, 20);
    // The level range stayed, so only the new columns were painted.
    EXPECT_EQ(item.fullRepaints(), repaints);
    EXPECT_EQ(item.paintedColumns(), painted + 20);
    // Low frequencies at the bottom: the 1 kHz row stands out, 136 rows up.
    const auto& history = sources->meter().spectrogram();
    const int x = static_cast<int>(history.physical(history.count() - 1));
    const int y = static_cast<int>(history.rows() - 1 - 136);
    EXPECT_GT(qAlpha(item.image().pixel(x, y)), 0);
    EXPECT_GT(qBlue(item.image().pixel(x, y)), qBlue(item.image().pixel(x, y + 20)));
}

TEST_F(SpectrogramViewsTest, ALouderMaximumRepaintsEveryColumnInTheNewRange)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrogramItem item;
    item.setMeter(&sources->meter());
    feedSpectra(*sources, 30.0, 5);
    const int repaints = item.fullRepaints();
    feedSpectra(*sources, 70.0, 1);
    EXPECT_EQ(item.fullRepaints(), repaints + 1);
    EXPECT_EQ(item.shownRange(), SpectrogramImage::range(sources->meter().spectrogram().maximum()));
}

TEST_F(SpectrogramViewsTest, GridLinesStandWhereTheFineBandsPutTheirFrequencies)
{
    EXPECT_DOUBLE_EQ(SpectrogramModel::heightFraction(1000.0), 136.0 / 240.0);
    EXPECT_DOUBLE_EQ(SpectrogramModel::heightFraction(2000.0), 160.0 / 240.0);
    SpectrogramModel model;
    model.setPlotHeight(240.0);
    const auto lines = model.gridLines();
    ASSERT_EQ(lines.size(), 10);
    EXPECT_DOUBLE_EQ(lines[5].toMap().value("y").toDouble(), 240.0 - 136.0);
    EXPECT_EQ(lines[5].toMap().value("text").toString(), "1k");
}

TEST_F(SpectrogramViewsTest, TheCursorShowsFrequencyAndLevelAndStaysInside)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrogramModel model;
    model.setMeter(&sources->meter());
    model.setPlotWidth(600.0);
    model.setPlotHeight(240.0);
    feedSpectra(*sources, 50.0, 10);
    // The newest column, at the 1 kHz row.
    model.hover(599.0, 240.0 - 136.5, 100.0, 20.0);
    EXPECT_TRUE(model.hasCursor());
    EXPECT_TRUE(model.cursorText().endsWith(QString::fromUtf8("kHz · 70.0 dB")))
        << model.cursorText().toStdString();
    EXPECT_LE(model.cursorPosition().x() + 100.0, 600.0);
    // Where no column was written, only the frequency is shown.
    model.hover(10.0, 100.0, 100.0, 20.0);
    EXPECT_FALSE(model.cursorText().contains("dB"));
    model.clearHover();
    EXPECT_FALSE(model.hasCursor());
}
