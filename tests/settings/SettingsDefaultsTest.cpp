#include <gtest/gtest.h>

#include <QSet>

#include "SettingsFixture.h"
#include "measurement/InputSettings.h"
#include "measurement/MeasurementSettings.h"
#include "model/DisplaySettings.h"
#include "qlab/QLabSettings.h"
#include "sessions/SessionSettings.h"

using namespace ostrel;

namespace {

class SettingsDefaults : public testsupport::SettingsFixture { };

} // namespace

TEST_F(SettingsDefaults, AnEmptyStoreGivesExactlyTheDefaultsAndIsNotCalibrated)
{
    SettingsStore& store = open();
    const MeasurementSettings measurement(store);
    const InputSettings input(store);
    const DisplaySettings display(store);
    const QLabSettings qlab(store);
    const SessionSettings sessions(store);

    EXPECT_EQ(input.deviceUID(), "");
    EXPECT_EQ(input.channel(), 0);
    EXPECT_EQ(measurement.calibrationOffset(), 120.0);
    EXPECT_FALSE(measurement.calibrationDate());
    EXPECT_EQ(measurement.calibratorReferenceLevel(), 94.0);
    EXPECT_FALSE(measurement.microphoneCorrection());
    EXPECT_EQ(measurement.weighting(), FrequencyWeighting::a);
    EXPECT_EQ(measurement.response(), TimeWeighting::fast);
    EXPECT_TRUE(qlab.enabled());
    EXPECT_EQ(qlab.host(), "localhost");
    EXPECT_EQ(qlab.port(), 53000);
    EXPECT_EQ(qlab.passcode(), "");
    EXPECT_EQ(qlab.workspace(), "");
    EXPECT_EQ(qlab.timecodeFallbackRate(), TimecodeRate::fps25);
    EXPECT_EQ(display.appearance(), AppearanceMode::system);
    EXPECT_EQ(display.graphDuration(), 60.0);
    EXPECT_EQ(display.elevatedThreshold(), 85.0);
    EXPECT_EQ(display.highThreshold(), 95.0);
    EXPECT_TRUE(display.showModeShowsGraph());
    EXPECT_EQ(display.screenBrightness(), 1.0);
    EXPECT_EQ(display.spectrumResolution(), SpectrumResolution::third);
    EXPECT_EQ(display.spectrumStyle(), SpectrumStyle::bars);
    EXPECT_TRUE(display.feedbackWarningEnabled());
    EXPECT_FALSE(display.unhingedMode());
    EXPECT_TRUE(sessions.recordsLevelHistory());
    EXPECT_TRUE(sessions.recordsSessions());
    EXPECT_FALSE(measurement.isCalibrated());

    // Construction writes nothing.
    settle();
    store.flush();
    EXPECT_TRUE(settings->allKeys().isEmpty());
    EXPECT_EQ(store.syncCount(), 0);
}

TEST_F(SettingsDefaults, EveryGroupWritesUnderItsOwnKeysAndNoKeyIsShared)
{
    SettingsStore& store = open();
    MeasurementSettings measurement(store);
    InputSettings input(store);
    DisplaySettings display(store);
    QLabSettings qlab(store);
    SessionSettings sessions(store);

    measurement.setWeighting(FrequencyWeighting::c);
    measurement.setResponse(TimeWeighting::slow);
    measurement.setCalibrationOffset(101.0);
    measurement.setCalibrationDate(Date {} + std::chrono::hours(1));
    measurement.setCalibratorReferenceLevel(114.0);
    measurement.setMicrophoneCorrection(MicrophoneCorrection("m", {{20, 1}, {20000, -1}}, 0.0));
    input.setDeviceUID("usb");
    input.setChannel(1);
    display.setAppearance(AppearanceMode::dark);
    display.setGraphDuration(30.0);
    display.setElevatedThreshold(80.0);
    display.setHighThreshold(90.0);
    display.setShowModeShowsGraph(false);
    display.setScreenBrightness(0.5);
    display.setSpectrumResolution(SpectrumResolution::sixth);
    display.setSpectrumStyle(SpectrumStyle::line);
    display.setFeedbackWarningEnabled(false);
    display.setUnhingedMode(true);
    qlab.setEnabled(false);
    qlab.setHost("10.0.0.2");
    qlab.setPort(53001);
    qlab.setPasscode("1234");
    qlab.setWorkspace("Main");
    qlab.setTimecodeFallbackRate(TimecodeRate::fps30);
    sessions.setRecordsLevelHistory(false);
    sessions.setRecordsSessions(false);
    store.flush();

    const QStringList keys = settings->allKeys();
    const QSet<QString> expected {"weighting", "response", "calibrationOffset", "calibrationDate",
        "calibratorReferenceLevel", "microphoneCorrection", "inputDeviceUID", "inputChannel",
        "appearance", "graphDuration", "elevatedThreshold", "highThreshold", "showModeShowsGraph",
        "screenBrightness", "spectrumResolution", "spectrumStyle", "feedbackWarningEnabled",
        "unhingedMode", "qlabEnabled", "qlabHost", "qlabPort", "qlabPasscode", "qlabWorkspace",
        "timecodeFallbackRate", "recordsLevelHistory", "recordsSessions"};
    EXPECT_EQ(QSet<QString>(keys.begin(), keys.end()), expected);
    EXPECT_EQ(keys.size(), expected.size());
}

TEST_F(SettingsDefaults, EveryValueSurvivesARelaunch)
{
    const MicrophoneCorrection correction("mic.txt", {{20, 1}, {1000, 0}, {20000, -2}}, -1.25);
    const Date calibrated = Date {} + std::chrono::milliseconds(1'790'000'000'123);
    {
        SettingsStore& store = open();
        MeasurementSettings measurement(store);
        InputSettings input(store);
        DisplaySettings display(store);
        measurement.setMicrophoneCorrection(correction);
        measurement.setCalibrationDate(calibrated);
        measurement.setCalibrationOffset(117.25);
        measurement.setWeighting(FrequencyWeighting::z);
        display.setSpectrumResolution(SpectrumResolution::twelfth);
        input.setDeviceUID("alsa_input.usb-Focusrite");
        input.setChannel(3);
    }
    SettingsStore& store = open();
    const MeasurementSettings measurement(store);
    const InputSettings input(store);
    const DisplaySettings display(store);
    EXPECT_EQ(measurement.microphoneCorrection(), correction);
    EXPECT_EQ(measurement.calibrationDate(), calibrated);
    EXPECT_TRUE(measurement.isCalibrated());
    EXPECT_EQ(measurement.calibrationOffset(), 117.25);
    EXPECT_EQ(measurement.weighting(), FrequencyWeighting::z);
    EXPECT_EQ(display.spectrumResolution(), SpectrumResolution::twelfth);
    EXPECT_EQ(input.deviceUID(), "alsa_input.usb-Focusrite");
    EXPECT_EQ(input.channel(), 3);
    EXPECT_EQ(onDisk("calibrationDate").toString(), "2026-09-21T14:13:20.123Z");
}

TEST_F(SettingsDefaults, AStoredFalseStaysFalseAfterARelaunchAndAMissingUnhingedModeIsFalse)
{
    {
        QLabSettings qlab(open());
        qlab.setEnabled(false);
    }
    SettingsStore& store = open();
    EXPECT_FALSE(QLabSettings(store).enabled());
    EXPECT_FALSE(DisplaySettings(store).unhingedMode());
}

TEST_F(SettingsDefaults, UnknownRawValuesReadAsTheDefaults)
{
    storeRaw("weighting", "B");
    storeRaw("spectrumResolution", 5);
    storeRaw("response", "medium");
    storeRaw("appearance", "sepia");
    storeRaw("spectrumStyle", "pie");
    storeRaw("qlabEnabled", "maybe");
    storeRaw("qlabPort", "fifty");
    SettingsStore& store = open();
    const MeasurementSettings measurement(store);
    const DisplaySettings display(store);
    const QLabSettings qlab(store);
    EXPECT_EQ(measurement.weighting(), FrequencyWeighting::a);
    EXPECT_EQ(display.spectrumResolution(), SpectrumResolution::third);
    EXPECT_EQ(measurement.response(), TimeWeighting::fast);
    EXPECT_EQ(display.appearance(), AppearanceMode::system);
    EXPECT_EQ(display.spectrumStyle(), SpectrumStyle::bars);
    EXPECT_TRUE(qlab.enabled());
    EXPECT_EQ(qlab.port(), 53000);
}

TEST_F(SettingsDefaults, KnownRawValuesReadAsTheirCases)
{
    storeRaw("weighting", "C");
    storeRaw("response", "slow");
    storeRaw("spectrumResolution", 24);
    storeRaw("appearance", "light");
    storeRaw("spectrumStyle", "spectrogram");
    SettingsStore& store = open();
    const MeasurementSettings measurement(store);
    const DisplaySettings display(store);
    EXPECT_EQ(measurement.weighting(), FrequencyWeighting::c);
    EXPECT_EQ(measurement.response(), TimeWeighting::slow);
    EXPECT_EQ(display.spectrumResolution(), SpectrumResolution::twentyFourth);
    EXPECT_EQ(display.appearance(), AppearanceMode::light);
    EXPECT_EQ(display.spectrumStyle(), SpectrumStyle::spectrogram);
}
