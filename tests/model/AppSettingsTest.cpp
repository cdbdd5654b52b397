#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>
#include <memory>

#include "model/AppSettings.h"
#include "model/IsoDate.h"

using namespace ostrel;

namespace {

// Every test gets its own INI file: never the user's settings.
class AppSettingsTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path() const { return folder.filePath("settings.ini"); }
    std::unique_ptr<QSettings> store() const
    {
        return std::make_unique<QSettings>(path(), QSettings::IniFormat);
    }
    void storeRaw(const QString& key, const QVariant& value)
    {
        QSettings settings(path(), QSettings::IniFormat);
        settings.setValue(key, value);
        settings.sync();
    }
};

} // namespace

TEST_F(AppSettingsTest, AnEmptyStoreGivesExactlyTheDefaultsAndIsNotCalibrated)
{
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.inputDeviceUID(), "");
    EXPECT_EQ(app.inputChannel(), 0);
    EXPECT_EQ(app.calibrationOffset(), 120.0);
    EXPECT_FALSE(app.calibrationDate());
    EXPECT_EQ(app.calibratorReferenceLevel(), 94.0);
    EXPECT_FALSE(app.microphoneCorrection());
    EXPECT_EQ(app.weighting(), FrequencyWeighting::a);
    EXPECT_EQ(app.response(), TimeWeighting::fast);
    EXPECT_TRUE(app.qlabEnabled());
    EXPECT_EQ(app.qlabHost(), "localhost");
    EXPECT_EQ(app.qlabPort(), 53000);
    EXPECT_EQ(app.qlabPasscode(), "");
    EXPECT_EQ(app.qlabWorkspace(), "");
    EXPECT_EQ(app.timecodeFallbackRate(), TimecodeRate::fps25);
    EXPECT_EQ(app.appearance(), AppearanceMode::system);
    EXPECT_EQ(app.graphDuration(), 60.0);
    EXPECT_EQ(app.elevatedThreshold(), 85.0);
    EXPECT_EQ(app.highThreshold(), 95.0);
    EXPECT_TRUE(app.showModeShowsGraph());
    EXPECT_EQ(app.screenBrightness(), 1.0);
    EXPECT_EQ(app.spectrumResolution(), SpectrumResolution::third);
    EXPECT_EQ(app.spectrumStyle(), SpectrumStyle::bars);
    EXPECT_TRUE(app.feedbackWarningEnabled());
    EXPECT_TRUE(app.danteMonitoringEnabled());
    EXPECT_TRUE(app.danteDropoutFlash());
    EXPECT_FALSE(app.unhingedMode());
    EXPECT_TRUE(app.micMonitoringEnabled());
    EXPECT_TRUE(app.micLowBatteryWarnings());
    EXPECT_EQ(app.crewRole(), CrewRole::standalone);
    EXPECT_EQ(app.stationName(), "");
    EXPECT_EQ(app.crewPrimary(), "");
    EXPECT_TRUE(app.recordsLevelHistory());
    EXPECT_TRUE(app.recordsSessions());
    EXPECT_FALSE(app.isCalibrated());
    // Construction writes nothing.
    EXPECT_TRUE(settings->allKeys().isEmpty());
}

TEST_F(AppSettingsTest, AStoredFalseStaysFalseAfterARelaunchAndAMissingUnhingedModeIsFalse)
{
    {
        auto settings = store();
        AppSettings app(*settings);
        app.setQlabEnabled(false);
    }
    auto settings = store();
    AppSettings relaunched(*settings);
    EXPECT_FALSE(relaunched.qlabEnabled());
    EXPECT_FALSE(relaunched.unhingedMode());
}

TEST_F(AppSettingsTest, TextThatIsNoNumberUnderCalibrationOffsetReadsAsTheDefault)
{
    storeRaw("calibrationOffset", "loud");
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.calibrationOffset(), 120.0);
}

TEST_F(AppSettingsTest, UnknownRawValuesReadAsTheDefaults)
{
    storeRaw("weighting", "B");
    storeRaw("spectrumResolution", 5);
    storeRaw("response", "medium");
    storeRaw("crewRole", "captain");
    storeRaw("appearance", "sepia");
    storeRaw("spectrumStyle", "pie");
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.weighting(), FrequencyWeighting::a);
    EXPECT_EQ(app.spectrumResolution(), SpectrumResolution::third);
    EXPECT_EQ(app.response(), TimeWeighting::fast);
    EXPECT_EQ(app.crewRole(), CrewRole::standalone);
    EXPECT_EQ(app.appearance(), AppearanceMode::system);
    EXPECT_EQ(app.spectrumStyle(), SpectrumStyle::bars);
}

TEST_F(AppSettingsTest, TimecodeRateOutsideZeroToSevenReadsAsTwentyFive)
{
    for (int raw : {8, -1}) {
        storeRaw("timecodeFallbackRate", raw);
        auto settings = store();
        AppSettings app(*settings);
        EXPECT_EQ(app.timecodeFallbackRate(), TimecodeRate::fps25) << raw;
    }
    storeRaw("timecodeFallbackRate", 7);
    auto settings = store();
    EXPECT_EQ(AppSettings(*settings).timecodeFallbackRate(), TimecodeRate::fps2997Drop);
}

TEST_F(AppSettingsTest, CorruptCorrectionJsonReadsAsAbsentAndTheKeyStays)
{
    storeRaw("microphoneCorrection", "{not json");
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_FALSE(app.microphoneCorrection());
    EXPECT_TRUE(settings->contains("microphoneCorrection"));
    app.setMicrophoneCorrection(std::nullopt);
    EXPECT_FALSE(settings->contains("microphoneCorrection"));
}

TEST_F(AppSettingsTest, CorrectionAndCalibrationDateSurviveARelaunch)
{
    const MicrophoneCorrection correction("mic.txt", {{20, 1}, {1000, 0}, {20000, -2}}, -1.25);
    const Date calibrated = Date{} + std::chrono::milliseconds(1'790'000'000'123);
    {
        auto settings = store();
        AppSettings app(*settings);
        app.setMicrophoneCorrection(correction);
        app.setCalibrationDate(calibrated);
        app.setCalibrationOffset(117.25);
        app.setWeighting(FrequencyWeighting::z);
        app.setSpectrumResolution(SpectrumResolution::twelfth);
        app.setCrewRole(CrewRole::secondary);
        app.setInputDeviceUID("alsa_input.usb-Focusrite");
        app.setInputChannel(3);
    }
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.microphoneCorrection(), correction);
    EXPECT_EQ(app.calibrationDate(), calibrated);
    EXPECT_TRUE(app.isCalibrated());
    EXPECT_EQ(app.calibrationOffset(), 117.25);
    EXPECT_EQ(app.weighting(), FrequencyWeighting::z);
    EXPECT_EQ(app.spectrumResolution(), SpectrumResolution::twelfth);
    EXPECT_EQ(app.crewRole(), CrewRole::secondary);
    EXPECT_EQ(app.inputDeviceUID(), "alsa_input.usb-Focusrite");
    EXPECT_EQ(app.inputChannel(), 3);
    EXPECT_EQ(settings->value("calibrationDate").toString(), IsoDate::string(calibrated));
}

TEST_F(AppSettingsTest, BrightnessIsClampedOnAssignmentInTheStoreAndAtLaunch)
{
    auto settings = store();
    AppSettings app(*settings);
    app.setScreenBrightness(0.05);
    EXPECT_EQ(app.screenBrightness(), 0.2);
    EXPECT_EQ(settings->value("screenBrightness").toDouble(), 0.2);
    app.setScreenBrightness(5.0);
    EXPECT_EQ(app.screenBrightness(), 1.0);
    EXPECT_EQ(settings->value("screenBrightness").toDouble(), 1.0);
    app.setScreenBrightness(0.6);
    EXPECT_EQ(app.screenBrightness(), 0.6);

    storeRaw("screenBrightness", 0.0);
    auto relaunched = store();
    EXPECT_EQ(AppSettings(*relaunched).screenBrightness(), 0.2);
}

TEST_F(AppSettingsTest, LevelRangesWithTheDefaultThresholds)
{
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.levelRange(85.0), LevelRange::elevated);
    EXPECT_EQ(app.levelRange(95.0), LevelRange::high);
    EXPECT_EQ(app.levelRange(84.99), LevelRange::normal);
}

TEST_F(AppSettingsTest, CrossedThresholdsPutALevelBetweenThemInTheHighRange)
{
    auto settings = store();
    AppSettings app(*settings);
    app.setElevatedThreshold(100.0);
    app.setHighThreshold(90.0);
    EXPECT_EQ(app.levelRange(95.0), LevelRange::high);
}

TEST_F(AppSettingsTest, MeterSettingReadsLetterAndResponse)
{
    auto settings = store();
    AppSettings app(*settings);
    EXPECT_EQ(app.meterSetting(), "A / Fast");
    int notified = 0;
    QObject::connect(&app, &AppSettings::meterSettingChanged, [&] { ++notified; });
    app.setWeighting(FrequencyWeighting::c);
    app.setResponse(TimeWeighting::slow);
    EXPECT_EQ(app.meterSetting(), "C / Slow");
    EXPECT_EQ(notified, 2);
}

TEST_F(AppSettingsTest, AssigningTheSameValueTwiceWritesTwiceAndNotifiesOnce)
{
    auto settings = store();
    AppSettings app(*settings);
    int notified = 0;
    QObject::connect(&app, &AppSettings::qlabHostChanged, [&] { ++notified; });
    app.setQlabHost("10.0.0.5");
    EXPECT_EQ(settings->value("qlabHost").toString(), "10.0.0.5");
    // Someone else changes the store; a repeated assignment writes again regardless.
    settings->setValue("qlabHost", "elsewhere");
    app.setQlabHost("10.0.0.5");
    EXPECT_EQ(settings->value("qlabHost").toString(), "10.0.0.5");
    EXPECT_EQ(notified, 1);
}

TEST_F(AppSettingsTest, ResetCalibrationRestoresTheOffsetAndForgetsTheDateOnly)
{
    auto settings = store();
    AppSettings app(*settings);
    app.setCalibrationOffset(101.5);
    app.setCalibrationDate(Date{} + std::chrono::seconds(5));
    app.setCalibratorReferenceLevel(114.0);
    app.resetCalibration();
    EXPECT_EQ(app.calibrationOffset(), 120.0);
    EXPECT_FALSE(app.calibrationDate());
    EXPECT_FALSE(settings->contains("calibrationDate"));
    EXPECT_EQ(app.calibratorReferenceLevel(), 114.0);
}

TEST_F(AppSettingsTest, ChangesAreInTheFileAtOnce)
{
    auto settings = store();
    AppSettings app(*settings);
    app.setStationName("FOH");
    // Another reader of the same file sees it without any save step.
    QSettings reader(path(), QSettings::IniFormat);
    EXPECT_EQ(reader.value("stationName").toString(), "FOH");
}
