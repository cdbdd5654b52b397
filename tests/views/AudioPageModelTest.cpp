#include <QSettings>
#include <QTemporaryDir>

#include "ViewSources.h"
#include "sessions/SessionSettings.h"
#include "views/calibration/InputPickerModel.h"
#include "views/main/settings/AudioPageModel.h"

using namespace ostrel;
using namespace ostrel::testsupport;

class AudioPageModelTest : public ViewSourcesFixture {
protected:
    static void show(AudioPageModel& page, ViewSources& sources)
    {
        page.setAudio(&sources.audio());
        page.setInput(&sources.inputSettings());
    }
};

TEST(AudioPageModelText, ratesAreShownInKilohertzWithAtMostOneDecimal)
{
    EXPECT_EQ(AudioPageModel::rateText(48000.0), "48 kHz");
    EXPECT_EQ(AudioPageModel::rateText(44100.0), "44.1 kHz");
    EXPECT_EQ(AudioPageModel::rateText(96000.0), "96 kHz");
    EXPECT_EQ(AudioPageModel::rateText(88200.0), "88.2 kHz");
}

TEST_F(AudioPageModelTest, theDevicesRatesAreOfferedAndChoosingOneSetsTheInputsRate)
{
    auto sources = make(AppModel::Mode::live);
    sources->input().start();
    settle();
    AudioPageModel page;
    show(page, *sources);
    ASSERT_TRUE(page.offersSampleRates());
    EXPECT_EQ(page.sampleRateOptions(), (QStringList {"44.1 kHz", "48 kHz", "96 kHz"}));
    EXPECT_EQ(page.sampleRateIndex(), 1);
    page.setSampleRateIndex(2);
    settle();
    EXPECT_EQ(sources->backend().devices.front().nominalSampleRate, 96000.0);
    EXPECT_EQ(sources->audio().sampleRate(), 96000.0);
    EXPECT_EQ(page.sampleRateIndex(), 2);
}

TEST_F(AudioPageModelTest, aVanishedDeviceStaysSelectedAsUnavailableWithNoRatesOffered)
{
    auto sources = make(AppModel::Mode::live);
    sources->inputSettings().setDeviceUID("gone");
    sources->audio().refreshDevices();
    AudioPageModel page;
    show(page, *sources);
    InputPickerModel picker;
    picker.setAudio(&sources->audio());
    picker.setInput(&sources->inputSettings());
    EXPECT_EQ(picker.deviceTitles().last(), "Unavailable Device");
    EXPECT_EQ(picker.deviceIndex(), picker.deviceTitles().size() - 1);
    EXPECT_FALSE(page.offersSampleRates());
    EXPECT_TRUE(page.sampleRateOptions().isEmpty());
}

TEST_F(AudioPageModelTest, aDeviceWithOneChannelLeavesTheChannelPickerVisibleAndDisabled)
{
    auto sources = make(AppModel::Mode::live);
    sources->backend().devices = {device("lav", "Lavalier", 1)};
    sources->audio().refreshDevices();
    InputPickerModel picker;
    picker.setAudio(&sources->audio());
    picker.setInput(&sources->inputSettings());
    EXPECT_EQ(picker.channelTitles(), (QStringList {"Channel 1"}));
    EXPECT_FALSE(picker.choosesChannel());
}

TEST(AudioPageModel, theFooterSaysWhetherAudioIsEverRecorded)
{
    QTemporaryDir folder;
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    SettingsStore store(settings);
    SessionSettings sessions(store);
    AudioPageModel page;
    page.setSessions(&sessions);
    EXPECT_EQ(page.footer(),
        "Audio is analysed in real time. It's recorded only during a session, for replay, and "
        "stays on this Mac.");
    sessions.setRecordsSessions(false);
    EXPECT_EQ(page.footer(), "Audio is analysed in real time and never recorded.");
}
