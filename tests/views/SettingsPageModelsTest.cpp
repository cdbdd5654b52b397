#include <gtest/gtest.h>

#include <QDir>
#include <QLocale>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <memory>

#include "measurement/MeasurementSettings.h"
#include "model/DisplaySettings.h"
#include "recording/RecordingLibrary.h"
#include "sessions/SessionSettings.h"
#include "settings/SettingsStore.h"
#include "station/AppUpdater.h"
#include "updates/UpdateSettings.h"
#include "views/main/settings/DataPageModel.h"
#include "views/main/settings/DisplayPageModel.h"
#include "views/main/settings/MeterPageModel.h"

using namespace ostrel;

namespace {

struct Store {
    QTemporaryDir folder;
    QSettings settings {folder.filePath("settings.ini"), QSettings::IniFormat};
    std::unique_ptr<SettingsStore> store = std::make_unique<SettingsStore>(settings);
    DisplaySettings display {*store};
    MeasurementSettings measurement {*store};
    SessionSettings sessions {*store};
    UpdateSettings updates {*store};
};

} // namespace

TEST(MeterPageModel, offersEachWeightingByItsLetterAndResponseByItsTitle)
{
    EXPECT_EQ(MeterPageModel::weightingOptions(), (QStringList {"A", "C", "Z"}));
    EXPECT_EQ(MeterPageModel::responseOptions(), (QStringList {"Fast", "Slow"}));
}

TEST(MeterPageModel, choosingAWeightingStoresItAndChangesTheFooter)
{
    Store store;
    MeterPageModel page;
    page.setMeasurement(&store.measurement);
    EXPECT_EQ(page.weightingIndex(), 0);
    EXPECT_EQ(page.weightingFooter(),
        "Approximates human hearing at moderate levels. Standard for noise exposure.");
    QSignalSpy changed(&page, &MeterPageModel::valuesChanged);
    page.setWeightingIndex(1);
    EXPECT_EQ(store.measurement.weighting(), FrequencyWeighting::c);
    EXPECT_GE(changed.count(), 1);
    EXPECT_EQ(page.weightingFooter(),
        "Flatter response that includes low frequencies. Useful for loud music and peaks.");
    page.setWeightingIndex(2);
    EXPECT_EQ(page.weightingFooter(), "No weighting. The unaltered acoustic level.");
    page.setWeightingIndex(3);
    EXPECT_EQ(store.measurement.weighting(), FrequencyWeighting::z);
}

TEST(MeterPageModel, choosingSlowStoresItAndExplainsTheAveraging)
{
    Store store;
    MeterPageModel page;
    page.setMeasurement(&store.measurement);
    EXPECT_EQ(page.responseFooter(), "Fast follows changes within an eighth of a second.");
    page.setResponseIndex(1);
    EXPECT_EQ(store.measurement.response(), TimeWeighting::slow);
    EXPECT_EQ(page.responseIndex(), 1);
    EXPECT_EQ(page.responseFooter(), "Slow averages over one second for a steadier reading.");
    page.setResponseIndex(-1);
    EXPECT_EQ(store.measurement.response(), TimeWeighting::slow);
}

TEST(MeterPageModel, theFeedbackSwitchFollowsTheSetting)
{
    Store store;
    MeterPageModel page;
    page.setDisplay(&store.display);
    EXPECT_TRUE(page.feedbackWarningEnabled());
    page.setFeedbackWarningEnabled(false);
    EXPECT_FALSE(store.display.feedbackWarningEnabled());
    store.display.setFeedbackWarningEnabled(true);
    EXPECT_TRUE(page.feedbackWarningEnabled());
}

TEST(DisplayPageModel, withHighAt85TheElevatedStepperStopsAt84)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    store.display.setHighThreshold(85.0);
    store.display.setElevatedThreshold(70.0);
    EXPECT_EQ(page.elevatedLower(), 40.0);
    EXPECT_EQ(page.elevatedUpper(), 84.0);
    page.setElevatedThreshold(90.0);
    EXPECT_EQ(store.display.elevatedThreshold(), 84.0);
    page.setElevatedThreshold(10.0);
    EXPECT_EQ(store.display.elevatedThreshold(), 40.0);
}

TEST(DisplayPageModel, withElevatedAt100TheHighStepperRunsFrom101To140)
{
    Store store;
    store.display.setHighThreshold(120.0);
    store.display.setElevatedThreshold(100.0);
    DisplayPageModel page;
    page.setDisplay(&store.display);
    EXPECT_EQ(page.highLower(), 101.0);
    EXPECT_EQ(page.highUpper(), 140.0);
    page.setHighThreshold(150.0);
    EXPECT_EQ(store.display.highThreshold(), 140.0);
    page.setHighThreshold(101.0);
    EXPECT_EQ(store.display.highThreshold(), 101.0);
    // The two ranges move with each other.
    EXPECT_EQ(page.elevatedUpper(), 100.0);
}

TEST(DisplayPageModelDeathTest, openingThePageWithAHighThresholdBelow41StopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Store store;
            store.display.setHighThreshold(30.0);
            DisplayPageModel page;
            page.setDisplay(&store.display);
        },
        "can't be formed");
}

TEST(DisplayPageModelDeathTest, openingThePageWithAnElevatedThresholdAbove139StopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Store store;
            store.display.setElevatedThreshold(139.5);
            DisplayPageModel page;
            page.setDisplay(&store.display);
        },
        "can't be formed");
}

TEST(DisplayPageModel, graphDurationsAreOfferedInWordsAndStoredInSeconds)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    EXPECT_EQ(DisplayPageModel::graphDurationOptions(),
        (QStringList {"30 seconds", "1 minute", "2 minutes"}));
    EXPECT_EQ(page.graphDurationIndex(), 1);
    page.setGraphDurationIndex(2);
    EXPECT_EQ(store.display.graphDuration(), 120.0);
    store.display.setGraphDuration(45.0);
    EXPECT_EQ(page.graphDurationIndex(), -1);
}

TEST(DisplayPageModel, appearanceIsChosenByTitle)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    EXPECT_EQ(DisplayPageModel::appearanceOptions(), (QStringList {"Automatic", "Light", "Dark"}));
    page.setAppearanceIndex(2);
    EXPECT_EQ(store.display.appearance(), AppearanceMode::dark);
    EXPECT_EQ(page.appearanceIndex(), 2);
}

TEST(DisplayPageModel, brightnessShowsARoundedPercentageAndKeepsItsClamp)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    EXPECT_EQ(page.brightnessText(), "100%");
    page.setScreenBrightness(0.456);
    EXPECT_EQ(page.brightnessText(), "46%");
    page.setScreenBrightness(0.05);
    EXPECT_EQ(store.display.screenBrightness(), 0.2);
    EXPECT_EQ(page.brightnessText(), "20%");
}

TEST(DisplayPageModel, theResolutionIsDisabledWhileTheStyleIsSpectrogram)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    EXPECT_EQ(DisplayPageModel::resolutionOptions(),
        (QStringList {"1/3 Octave", "1/6 Octave", "1/12 Octave", "1/24 Octave"}));
    EXPECT_EQ(
        DisplayPageModel::spectrumStyleOptions(), (QStringList {"Bars", "Line", "Spectrogram"}));
    EXPECT_TRUE(page.resolutionEnabled());
    EXPECT_TRUE(page.spectrumFooter().startsWith("Finer bands help pin down a frequency for EQ."));
    page.setSpectrumStyleIndex(2);
    EXPECT_EQ(store.display.spectrumStyle(), SpectrumStyle::spectrogram);
    EXPECT_FALSE(page.resolutionEnabled());
    EXPECT_EQ(page.spectrumFooter(),
        "The spectrogram always uses 1/24-octave bands and spans the graph duration.");
    page.setResolutionIndex(3);
    EXPECT_EQ(store.display.spectrumResolution(), SpectrumResolution::twentyFourth);
}

TEST(DisplayPageModel, unhingedModeAndTheGraphSwitchWriteThroughAtOnce)
{
    Store store;
    DisplayPageModel page;
    page.setDisplay(&store.display);
    page.setUnhingedMode(true);
    EXPECT_TRUE(store.display.unhingedMode());
    page.setShowModeShowsGraph(false);
    EXPECT_FALSE(store.display.showModeShowsGraph());
    EXPECT_FALSE(page.showModeShowsGraph());
}

TEST(DataPageModel, theRecordingFooterGivesTheSizeOfAnHourInBytes)
{
    const QString footer = DataPageModel::recordingFooter();
    EXPECT_TRUE(footer.startsWith("Saves the microphone's audio with the level and spectrum ten "
                                  "times a second, so you can replay a show in File \u203A "
                                  "Recordings. About "));
    EXPECT_TRUE(footer.endsWith(" per hour."));
    EXPECT_TRUE(footer.contains(
        QLocale().formattedDataSize(RecordingLibrary::bytesPerHour, 1, QLocale::DataSizeSIFormat)));
    EXPECT_TRUE(footer.contains(" MB ")) << footer.toStdString();
}

TEST(DataPageModel, theStorageFooterFollowsTheRecordingSwitch)
{
    Store store;
    DataPageModel page;
    page.setSessions(&store.sessions);
    EXPECT_TRUE(page.recordsSessions());
    EXPECT_EQ(page.storageFooter(),
        "Sessions and their recordings stay on this Mac. Delete recordings in the Recordings "
        "window.");
    page.setRecordsSessions(false);
    EXPECT_FALSE(store.sessions.recordsSessions());
    EXPECT_EQ(page.storageFooter(),
        "Ostrel Live stores measurements only. Microphone audio is never recorded or saved.");
    page.setRecordsLevelHistory(false);
    EXPECT_FALSE(store.sessions.recordsLevelHistory());
}

TEST(DataPageModel, aStationThatCannotCheckForUpdatesHasNoUpdateToggle)
{
    Store store;
    AppUpdater inert(false, store.updates, QStringLiteral("https://example.org/appcast.xml"));
    DataPageModel page;
    page.setUpdater(&inert);
    EXPECT_FALSE(page.showsUpdateToggle());
    const bool before = store.updates.checksAutomatically();
    page.setChecksAutomatically(!before);
    EXPECT_EQ(store.updates.checksAutomatically(), before);
}

TEST(DataPageModel, aStationThatChecksForUpdatesOffersTheAutomaticCheck)
{
    Store store;
    AppUpdater live(true, store.updates, QStringLiteral("https://example.org/appcast.xml"));
    DataPageModel page;
    page.setUpdater(&live);
    EXPECT_TRUE(page.showsUpdateToggle());
    const bool before = page.checksAutomatically();
    page.setChecksAutomatically(!before);
    EXPECT_EQ(store.updates.checksAutomatically(), !before);
    EXPECT_EQ(page.checksAutomatically(), !before);
}

TEST(DataPageModel, showingTheSessionsFolderCreatesItFirst)
{
    QTemporaryDir folder;
    DataPageModel page;
    EXPECT_TRUE(page.prepareSessionsFolder().isEmpty());
    const QString sessions = folder.filePath("Support/Sessions");
    page.setSessionsFolder(sessions);
    const QUrl address = page.prepareSessionsFolder();
    EXPECT_TRUE(QDir(sessions).exists());
    EXPECT_EQ(address, QUrl::fromLocalFile(sessions));
}
