#include <QSignalSpy>

#include "SpectrumSamples.h"
#include "ViewSources.h"
#include "views/spectrum/DominantFrequencyModel.h"
#include "views/spectrum/FeedbackWarningModel.h"
#include "views/spectrum/SpectrumOptionsModel.h"

using namespace ostrel;

class SpectrumReadoutModelsTest : public testsupport::ViewSourcesFixture { };

TEST_F(SpectrumReadoutModelsTest, TheDominantFrequencyReadsNoneUntilOneIsHeard)
{
    auto sources = make(AppModel::Mode::inert);
    DominantFrequencyModel dominant;
    dominant.setMeter(&sources->meter());
    EXPECT_EQ(dominant.caption(), "Dominant");
    EXPECT_EQ(dominant.text(), "None");
    EXPECT_EQ(dominant.accessibleName(), "Dominant frequency");
    EXPECT_EQ(dominant.helpText(), "The strongest frequency the microphone is hearing");
    clock = addingSeconds(clock, 0.1);
    sources->meter().ingest(testsupport::spectrumInterval(50.0, 1250.0), clock);
    EXPECT_EQ(dominant.text(), "1.25 kHz");
}

TEST_F(SpectrumReadoutModelsTest, TheFeedbackWarningNamesTheFrequencyWhileItStands)
{
    auto sources = make(AppModel::Mode::inert);
    FeedbackWarningModel warning;
    warning.setChooser([](int count) { return count - 1; });
    warning.setMeter(&sources->meter());
    warning.setDisplay(&sources->display());
    EXPECT_FALSE(warning.isShown());

    // A tone that stands 35 dB above its surroundings and grows, held for over a second.
    for (int i = 0; i < 20; ++i) {
        clock = addingSeconds(clock, 0.1);
        MeasurementInterval interval = testsupport::spectrumInterval(50.0);
        interval.spectrum->peak = SpectralPeak {2500.0, 80.0 + 0.3 * i, 35.0, -40.0};
        sources->meter().ingest(interval, clock);
    }
    ASSERT_TRUE(sources->meter().feedbackWarning().has_value());
    EXPECT_TRUE(warning.isShown());
    EXPECT_EQ(warning.text(), QString::fromUtf8("Possible feedback · 2.50 kHz"));
    EXPECT_EQ(warning.accessibleText(), "Possible feedback at 2.50 kHz");
    EXPECT_EQ(warning.symbol(), "exclamationmark.triangle.fill");
    EXPECT_EQ(warning.backgroundOpacity(), 0.14);
    EXPECT_EQ(warning.shownOpacity(), 0.95);

    // Unhinged, the outburst drawn for this warning; spoken words keep the normal wording.
    sources->display().setUnhingedMode(true);
    settle();
    EXPECT_EQ(warning.text(), "Feedback. Who the fuck EQ'd this?");
    EXPECT_EQ(warning.accessibleText(), "Possible feedback at 2.50 kHz");
}

TEST_F(SpectrumReadoutModelsTest, TheUnhingedOutburstIsDrawnOncePerWarning)
{
    auto sources = make(AppModel::Mode::inert);
    sources->display().setUnhingedMode(true);
    FeedbackWarningModel warning;
    int draws = 0;
    warning.setChooser([&draws](int count) { return (draws++) % count; });
    warning.setMeter(&sources->meter());
    warning.setDisplay(&sources->display());
    for (int i = 0; i < 30; ++i) {
        clock = addingSeconds(clock, 0.1);
        MeasurementInterval interval = testsupport::spectrumInterval(50.0);
        interval.spectrum->peak = SpectralPeak {2500.0, 80.0 + 0.3 * i, 35.0, -40.0};
        sources->meter().ingest(interval, clock);
    }
    ASSERT_TRUE(warning.isShown());
    EXPECT_EQ(draws, 1);
    EXPECT_TRUE(FeedbackWarningModel::unhingedTexts().contains(warning.text()));
}

TEST_F(SpectrumReadoutModelsTest, TheOptionsMenuWritesStyleAndResolution)
{
    auto sources = make(AppModel::Mode::inert);
    SpectrumOptionsModel options;
    options.setDisplay(&sources->display());
    EXPECT_EQ(options.accessibleName(), "Spectrum style and resolution");
    EXPECT_EQ(options.styleTitles(), (QStringList {"Bars", "Line", "Spectrogram"}));
    EXPECT_EQ(options.styleSymbols(),
        (QStringList {"chart.bar.fill", "waveform.path.ecg", "square.grid.3x3.fill"}));
    EXPECT_EQ(options.resolutionTitles(),
        (QStringList {"1/3 Octave", "1/6 Octave", "1/12 Octave", "1/24 Octave"}));
    QSignalSpy changes(&options, &SpectrumOptionsModel::choiceChanged);
    options.setStyleIndex(2);
    options.setResolutionIndex(3);
    EXPECT_EQ(sources->display().spectrumStyle(), SpectrumStyle::spectrogram);
    EXPECT_EQ(sources->display().spectrumResolution(), SpectrumResolution::twentyFourth);
    EXPECT_EQ(options.styleIndex(), 2);
    EXPECT_EQ(options.resolutionIndex(), 3);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(options.note(),
        "The spectrogram always uses 1/24-octave bands and spans the graph duration.");
    options.setStyleIndex(7);
    EXPECT_EQ(sources->display().spectrumStyle(), SpectrumStyle::spectrogram);
}
