#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "measurement/MeasurementSettings.h"

using namespace ostrel;

namespace {

class MeasurementSettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(MeasurementSettingsTest, TextThatIsNoNumberUnderCalibrationOffsetReadsAsTheDefault)
{
    storeRaw("calibrationOffset", "loud");
    EXPECT_EQ(MeasurementSettings(open()).calibrationOffset(), 120.0);
}

TEST_F(MeasurementSettingsTest, ANonFiniteCalibrationOffsetReadsAsTheDefault)
{
    storeRaw("calibrationOffset", "nan");
    EXPECT_EQ(MeasurementSettings(open()).calibrationOffset(), 120.0);
}

TEST_F(MeasurementSettingsTest, CorruptCorrectionJsonReadsAsAbsentAndTheKeyStays)
{
    storeRaw("microphoneCorrection", "{not json");
    SettingsStore& store = open();
    MeasurementSettings measurement(store);
    EXPECT_FALSE(measurement.microphoneCorrection());
    store.flush();
    EXPECT_TRUE(onDisk("microphoneCorrection").isValid());
    measurement.setMicrophoneCorrection(std::nullopt);
    store.flush();
    EXPECT_FALSE(onDisk("microphoneCorrection").isValid());
}

TEST_F(MeasurementSettingsTest, TextThatIsNoDateUnderCalibrationDateReadsAsAbsent)
{
    storeRaw("calibrationDate", "yesterday");
    const MeasurementSettings measurement(open());
    EXPECT_FALSE(measurement.calibrationDate());
    EXPECT_FALSE(measurement.isCalibrated());
}

TEST_F(MeasurementSettingsTest, MeterSettingReadsLetterAndResponse)
{
    MeasurementSettings measurement(open());
    EXPECT_EQ(measurement.meterSetting(), "A / Fast");
    int notified = 0;
    QObject::connect(&measurement, &MeasurementSettings::meterSettingChanged, [&] { ++notified; });
    measurement.setWeighting(FrequencyWeighting::c);
    measurement.setResponse(TimeWeighting::slow);
    EXPECT_EQ(measurement.meterSetting(), "C / Slow");
    EXPECT_EQ(notified, 2);
    measurement.setResponse(TimeWeighting::slow);
    EXPECT_EQ(notified, 2);
}

TEST_F(MeasurementSettingsTest, ResetCalibrationRestoresTheOffsetAndForgetsTheDateOnly)
{
    SettingsStore& store = open();
    MeasurementSettings measurement(store);
    const MicrophoneCorrection correction("m", {{20, 1}, {20000, -1}}, 0.0);
    measurement.setCalibrationOffset(101.5);
    measurement.setCalibrationDate(Date {} + std::chrono::seconds(5));
    measurement.setCalibratorReferenceLevel(114.0);
    measurement.setMicrophoneCorrection(correction);
    measurement.resetCalibration();
    EXPECT_EQ(measurement.calibrationOffset(), 120.0);
    EXPECT_FALSE(measurement.calibrationDate());
    EXPECT_EQ(measurement.calibratorReferenceLevel(), 114.0);
    EXPECT_EQ(measurement.microphoneCorrection(), correction);
    store.flush();
    EXPECT_FALSE(onDisk("calibrationDate").isValid());
    EXPECT_EQ(onDisk("calibrationOffset").toDouble(), 120.0);
}
