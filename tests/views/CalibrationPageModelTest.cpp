#include <QDateTime>
#include <QSignalSpy>
#include <limits>

#include "ViewSources.h"
#include "views/main/settings/CalibrationPageModel.h"

using namespace ostrel;
using Status = AudioInput::Status;

class CalibrationPageModelTest : public testsupport::ViewSourcesFixture {
protected:
    static void show(CalibrationPageModel& page, testsupport::ViewSources& sources)
    {
        page.setMode(sources.mode());
        page.setMeasurement(&sources.measurement());
        page.setAudio(&sources.audio());
    }
};

TEST(CalibrationPageModelText, theOffsetCarriesASignAlwaysAlsoForZero)
{
    EXPECT_EQ(CalibrationPageModel::offsetText(0.0), "+0.0 dB");
    EXPECT_EQ(CalibrationPageModel::offsetText(-0.04), "+0.0 dB");
    EXPECT_EQ(CalibrationPageModel::offsetText(101.25), "+101.3 dB");
    EXPECT_EQ(CalibrationPageModel::offsetText(-3.5), "-3.5 dB");
    EXPECT_EQ(CalibrationPageModel::offsetText(120.0), "+120.0 dB");
}

TEST(CalibrationPageModelText, aStationNeverCalibratedReadsNever)
{
    EXPECT_EQ(CalibrationPageModel::dateText(std::nullopt), "Never");
    const QDateTime local(QDate(2026, 3, 7), QTime(21, 5));
    const Date date = Date {} + std::chrono::milliseconds(local.toMSecsSinceEpoch());
    EXPECT_EQ(CalibrationPageModel::dateText(date), "7 Mar 2026, 9:05 PM");
}

TEST_F(CalibrationPageModelTest, resetCalibrationIsDisabledOnAStationNeverCalibrated)
{
    auto sources = make(AppModel::Mode::inert);
    CalibrationPageModel page;
    show(page, *sources);
    EXPECT_FALSE(page.canReset());
    EXPECT_EQ(page.lastCalibratedText(), "Never");
    EXPECT_EQ(page.offsetText(), "+120.0 dB");
    EXPECT_EQ(page.referenceText(), "94.0 dB SPL");
    page.resetCalibration();
    EXPECT_FALSE(sources->measurement().isCalibrated());

    sources->measurement().setCalibrationOffset(101.2);
    sources->measurement().setCalibrationDate(std::chrono::system_clock::now());
    EXPECT_TRUE(page.canReset());
    EXPECT_NE(page.lastCalibratedText(), "Never");
    page.resetCalibration();
    EXPECT_FALSE(sources->measurement().isCalibrated());
    EXPECT_EQ(sources->measurement().calibrationOffset(), 120.0);
    EXPECT_FALSE(page.canReset());
}

TEST_F(CalibrationPageModelTest, theAdvancedOffsetIsStoredAndNonNumbersAreDropped)
{
    auto sources = make(AppModel::Mode::inert);
    CalibrationPageModel page;
    show(page, *sources);
    QSignalSpy changed(&page, &CalibrationPageModel::valuesChanged);
    page.setCalibrationOffset(98.4);
    EXPECT_EQ(sources->measurement().calibrationOffset(), 98.4);
    EXPECT_GE(changed.count(), 1);
    EXPECT_EQ(page.offsetText(), "+98.4 dB");
    page.setCalibrationOffset(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(sources->measurement().calibrationOffset(), 98.4);
}

TEST_F(CalibrationPageModelTest, aLiveStationWithoutWorkingInputCannotCalibrate)
{
    auto sources = make(AppModel::Mode::live);
    CalibrationPageModel page;
    show(page, *sources);
    EXPECT_FALSE(page.canCalibrate());
    sources->input().start();
    settle();
    ASSERT_EQ(sources->audio().status(), Status::running);
    EXPECT_TRUE(page.canCalibrate());
}

TEST_F(CalibrationPageModelTest, demoAndInertStationsCanAlwaysCalibrate)
{
    for (auto mode : {AppModel::Mode::demo, AppModel::Mode::inert}) {
        auto sources = make(mode);
        CalibrationPageModel page;
        show(page, *sources);
        EXPECT_NE(sources->audio().status(), Status::running);
        EXPECT_TRUE(page.canCalibrate());
    }
}

TEST_F(CalibrationPageModelTest, removingTheCorrectionLeavesNone)
{
    auto sources = make(AppModel::Mode::inert);
    CalibrationPageModel page;
    show(page, *sources);
    EXPECT_EQ(page.correctionText(), "None");
    sources->measurement().setMicrophoneCorrection(
        MicrophoneCorrection("ECM8000.txt", {{20.0, -1.0}, {1000.0, 0.0}, {20000.0, 2.0}}));
    EXPECT_TRUE(page.hasCorrection());
    EXPECT_EQ(page.correctionText(), "ECM8000.txt");
    page.removeCorrection();
    EXPECT_FALSE(sources->measurement().microphoneCorrection());
    EXPECT_EQ(page.correctionText(), "None");
}
