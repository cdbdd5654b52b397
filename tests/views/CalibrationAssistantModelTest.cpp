#include <QSignalSpy>
#include <QTest>

#include "StationFixture.h"
#include "views/calibration/CalibrationAssistantModel.h"
#include "views/calibration/InputPickerModel.h"
#include "views/components/Theme.h"

using namespace ostrel;

class CalibrationAssistantModelTest : public testsupport::StationFixture {
protected:
    double seconds = 0.0;

    // The measurement's clock moves only when the test says; its ticks come every millisecond.
    std::unique_ptr<AppModel> station(AppModel::Mode mode = AppModel::Mode::inert)
    {
        auto model = make(mode);
        model->calibration().setClock([this] { return seconds; });
        model->calibration().setTick(1);
        return model;
    }

    // A steady calibrator tone at `rawDBFS` for `duration` seconds of measuring time.
    void listen(AppModel& model, double rawDBFS, double duration)
    {
        const int count = static_cast<int>(duration * 10.0 + 0.5);
        for (int i = 0; i < count; ++i) {
            clock = addingSeconds(clock, 0.1);
            model.ingest(interval(94.0, rawDBFS), clock);
            seconds += 0.1;
        }
    }

    static void walkToMeasuring(CalibrationAssistantModel& assistant)
    {
        assistant.open();
        assistant.primary();
        assistant.primary();
        assistant.primary();
    }
};

TEST_F(CalibrationAssistantModelTest, ThePagesLeadToASuccessThatIsStoredOnDone)
{
    using Step = CalibrationAssistantModel::Step;
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());

    assistant.open();
    EXPECT_TRUE(assistant.isOpen());
    EXPECT_EQ(assistant.step(), Step::connect);
    EXPECT_EQ(assistant.symbol(), "mic");
    EXPECT_EQ(assistant.symbolColorRole(), static_cast<int>(Theme::Role::accent));
    EXPECT_EQ(assistant.title(), "Connect Your Microphone");
    EXPECT_EQ(assistant.text(),
        "Connect your measurement microphone to your audio interface and "
        "turn on phantom power.");
    EXPECT_TRUE(assistant.showsInputPicker());
    EXPECT_EQ(assistant.primaryTitle(), "Continue");
    EXPECT_EQ(assistant.cancelTitle(), "Cancel");

    assistant.primary();
    EXPECT_EQ(assistant.step(), Step::insert);
    EXPECT_EQ(assistant.symbol(), "tuningfork");
    EXPECT_EQ(assistant.title(), "Insert the Microphone");
    EXPECT_EQ(assistant.text(),
        "Place the microphone fully inside the acoustic calibrator so it seals snugly.");
    EXPECT_EQ(assistant.primaryTitle(), "Continue");

    assistant.primary();
    EXPECT_EQ(assistant.step(), Step::calibrate);
    EXPECT_EQ(assistant.symbol(), "speaker.wave.2");
    EXPECT_EQ(assistant.title(), "Turn On the Calibrator");
    EXPECT_EQ(assistant.text(), "Switch on the calibrator, then enter the level printed on it.");
    EXPECT_TRUE(assistant.showsReferenceField());
    EXPECT_EQ(assistant.referenceCaption(), "Reference level");
    EXPECT_EQ(assistant.referenceUnit(), "dB SPL");
    EXPECT_EQ(assistant.primaryTitle(), "Calibrate");
    assistant.setReferenceLevel(114.0);
    EXPECT_EQ(model->settings().measurement().calibratorReferenceLevel(), 114.0);

    assistant.primary();
    EXPECT_EQ(assistant.step(), Step::measuring);
    EXPECT_EQ(assistant.symbol(), "waveform");
    EXPECT_EQ(assistant.title(), "Listening");
    EXPECT_EQ(assistant.text(), "Keep the calibrator steady and the room quiet.");
    EXPECT_TRUE(assistant.showsProgress());
    EXPECT_EQ(assistant.primaryTitle(), "Calibrate");
    EXPECT_FALSE(assistant.primaryEnabled());
    EXPECT_EQ(assistant.progress(), 0.0);

    listen(*model, -20.0, 2.0);
    QTRY_COMPARE(assistant.progress(), 0.5);
    listen(*model, -20.0, 2.0);
    QTRY_COMPARE(assistant.step(), Step::finished);
    EXPECT_EQ(assistant.progress(), 1.0);
    EXPECT_EQ(assistant.symbol(), "checkmark.circle");
    EXPECT_EQ(assistant.symbolColorRole(), static_cast<int>(Theme::Role::green));
    EXPECT_EQ(assistant.title(), "Calibration Complete");
    EXPECT_TRUE(assistant.showsResult());
    EXPECT_EQ(assistant.offsetCaption(), "Calibration offset");
    EXPECT_EQ(assistant.offsetText(), "+134.0 dB");
    EXPECT_EQ(assistant.measuredCaption(), "Measured");
    EXPECT_EQ(assistant.measuredText(), "-20.0 dBFS at 114.0 dB SPL");
    EXPECT_EQ(assistant.primaryTitle(), "Done");
    // Nothing is stored before Done.
    EXPECT_FALSE(model->settings().measurement().isCalibrated());
    EXPECT_EQ(model->settings().measurement().calibrationOffset(), 120.0);

    feed(*model, 80.0, 1.0);
    assistant.primary();
    EXPECT_FALSE(assistant.isOpen());
    EXPECT_DOUBLE_EQ(model->settings().measurement().calibrationOffset(), 134.0);
    EXPECT_TRUE(model->settings().measurement().isCalibrated());
    EXPECT_FALSE(model->meter().liveStatistics().peak().has_value());
}

TEST_F(CalibrationAssistantModelTest, CancelDuringMeasuringStoresNoOffset)
{
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    walkToMeasuring(assistant);
    listen(*model, -20.0, 1.0);
    assistant.cancel();
    EXPECT_FALSE(assistant.isOpen());
    EXPECT_FALSE(model->calibration().isMeasuring());
    // The cancelled measurement's end is not taken either.
    listen(*model, -20.0, 4.0);
    QTest::qWait(20);
    EXPECT_NE(assistant.step(), CalibrationAssistantModel::Step::finished);
    EXPECT_EQ(model->settings().measurement().calibrationOffset(), 120.0);
    EXPECT_FALSE(model->settings().measurement().isCalibrated());
}

TEST_F(CalibrationAssistantModelTest, CancelOnTheSuccessPageStoresNoOffset)
{
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    walkToMeasuring(assistant);
    listen(*model, -20.0, 4.0);
    QTRY_VERIFY(assistant.showsResult());
    assistant.cancel();
    EXPECT_FALSE(assistant.isOpen());
    EXPECT_EQ(model->settings().measurement().calibrationOffset(), 120.0);
    EXPECT_FALSE(model->settings().measurement().isCalibrated());
}

TEST_F(CalibrationAssistantModelTest, TryAgainMeasuresAgainAtOnceWithTheSameReference)
{
    using Step = CalibrationAssistantModel::Step;
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    assistant.setReferenceLevel(104.0);
    walkToMeasuring(assistant);
    // Nothing heard: the collector's words and "Try Again".
    seconds += 4.0;
    QTRY_COMPARE(assistant.step(), Step::finished);
    EXPECT_EQ(assistant.symbol(), "exclamationmark.triangle");
    EXPECT_EQ(assistant.symbolColorRole(), static_cast<int>(Theme::Role::orange));
    EXPECT_EQ(assistant.title(), "Calibration Didn't Finish");
    EXPECT_EQ(assistant.text(),
        "Ostrel Live couldn't hear the calibrator. Check that it's "
        "switched on and the microphone is fully inserted.");
    EXPECT_EQ(assistant.primaryTitle(), "Try Again");
    EXPECT_FALSE(assistant.showsResult());

    assistant.primary();
    EXPECT_EQ(assistant.step(), Step::measuring);
    EXPECT_EQ(assistant.progress(), 0.0);
    // Another four seconds: half way after two.
    listen(*model, -30.0, 2.0);
    QTRY_COMPARE(assistant.progress(), 0.5);
    EXPECT_EQ(assistant.step(), Step::measuring);
    listen(*model, -30.0, 2.0);
    QTRY_COMPARE(assistant.step(), Step::finished);
    EXPECT_EQ(assistant.offsetText(), "+134.0 dB");
    EXPECT_EQ(assistant.measuredText(), "-30.0 dBFS at 104.0 dB SPL");
}

TEST_F(CalibrationAssistantModelTest, AWaveringToneGivesTheUnsteadyMessage)
{
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    walkToMeasuring(assistant);
    for (int i = 0; i < 40; ++i)
        listen(*model, i % 10 < 5 ? -20.0 : -26.0, 0.1);
    QTRY_COMPARE(assistant.step(), CalibrationAssistantModel::Step::finished);
    EXPECT_EQ(assistant.text(),
        "The level wasn't steady. Make sure the room is quiet and the "
        "calibrator isn't moving.");
}

TEST_F(CalibrationAssistantModelTest, FeedbackDetectionPausesWhileTheAssistantIsOpen)
{
    auto model = station();
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    EXPECT_FALSE(model->meter().suspendsFeedbackDetection());
    assistant.open();
    EXPECT_TRUE(model->meter().suspendsFeedbackDetection());
    assistant.primary();
    assistant.cancel();
    EXPECT_FALSE(model->meter().suspendsFeedbackDetection());
    walkToMeasuring(assistant);
    EXPECT_TRUE(model->meter().suspendsFeedbackDetection());
    listen(*model, -20.0, 4.0);
    QTRY_VERIFY(assistant.showsResult());
    assistant.primary();
    EXPECT_FALSE(model->meter().suspendsFeedbackDetection());
}

TEST_F(CalibrationAssistantModelTest, OffsetsAreWrittenWithASignAlways)
{
    EXPECT_EQ(CalibrationAssistantModel::offsetText(0.0), "+0.0 dB");
    EXPECT_EQ(CalibrationAssistantModel::offsetText(117.01), "+117.0 dB");
    EXPECT_EQ(CalibrationAssistantModel::offsetText(-3.24), QString::fromUtf8("\u22123.2 dB"));
}

TEST_F(CalibrationAssistantModelTest, SwitchingInputOnTheFirstPageAppliesAtOnce)
{
    auto model = station(AppModel::Mode::live);
    backend->devices = {testsupport::device("mic", "Measurement Mic", 2),
        testsupport::device("usb", "USB Interface", 8)};
    model->start();
    settle();
    ASSERT_EQ(model->audio().status(), AudioInput::Status::running);
    CalibrationAssistantModel assistant;
    assistant.setAppModel(model.get());
    assistant.open();
    InputPickerModel picker;
    picker.setAudio(&model->audio());
    picker.setInput(&model->settings().input());
    picker.refreshDevices();
    EXPECT_EQ(picker.inputTitle(), "Input");
    EXPECT_EQ(picker.channelTitle(), "Channel");
    EXPECT_EQ(picker.deviceTitles(),
        (QStringList {"System Default", "Measurement Mic", "USB Interface"}));
    EXPECT_EQ(picker.deviceIndex(), 0);
    EXPECT_EQ(picker.channelTitles(), (QStringList {"Channel 1", "Channel 2"}));

    const int startsBefore = backend->starts;
    picker.setDeviceIndex(2);
    picker.setChannelIndex(6);
    EXPECT_EQ(model->settings().input().deviceUID(), "usb");
    settle();
    EXPECT_GT(backend->starts, startsBefore);
    ASSERT_TRUE(model->audio().activeDevice().has_value());
    EXPECT_EQ(model->audio().activeDevice()->uid, "usb");
    EXPECT_EQ(model->audio().measuredChannel(), 6);
    EXPECT_EQ(picker.deviceIndex(), 2);
    EXPECT_EQ(picker.channelTitles().size(), 8);
    EXPECT_EQ(picker.channelIndex(), 6);
}

TEST_F(CalibrationAssistantModelTest, AVanishedDeviceStaysChosenAsUnavailable)
{
    auto model = station(AppModel::Mode::live);
    model->settings().input().setDeviceUID("gone");
    InputPickerModel picker;
    picker.setAudio(&model->audio());
    picker.setInput(&model->settings().input());
    picker.refreshDevices();
    EXPECT_EQ(picker.deviceTitles(),
        (QStringList {"System Default", "Measurement Mic", "Unavailable Device"}));
    EXPECT_EQ(picker.deviceIndex(), 2);
    EXPECT_TRUE(picker.channelTitles().isEmpty());
    EXPECT_FALSE(picker.choosesChannel());
}
