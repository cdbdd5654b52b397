#include <QSignalSpy>

#include "ViewSources.h"
#include "views/level/MeterDescriptionModel.h"

using namespace ostrel;
using Status = MeterDescriptionModel::Status;

class MeterDescriptionModelTest : public testsupport::ViewSourcesFixture {
protected:
    std::unique_ptr<testsupport::ViewSources> model = make(AppModel::Mode::inert);
    MeterDescriptionModel description;

    void SetUp() override { testsupport::show(description, *model); }
};

TEST_F(MeterDescriptionModelTest, NoSignalOutranksClippingWhichOutranksTheRange)
{
    EXPECT_EQ(
        MeterDescriptionModel::status(120.0, false, true, LevelRange::high), Status::noSignal);
    EXPECT_EQ(
        MeterDescriptionModel::status(120.0, true, true, LevelRange::high), Status::inputOverload);
    EXPECT_EQ(MeterDescriptionModel::status(100.0, true, false, LevelRange::high), Status::high);
    EXPECT_EQ(
        MeterDescriptionModel::status(90.0, true, false, LevelRange::elevated), Status::elevated);
    EXPECT_EQ(MeterDescriptionModel::status(60.0, true, false, LevelRange::normal), Status::normal);
    EXPECT_EQ(MeterDescriptionModel::status(std::nullopt, true, true, LevelRange::normal),
        Status::noSignal);
}

TEST_F(MeterDescriptionModelTest, TheStationSaysInWordsWhatItMeasures)
{
    EXPECT_EQ(description.statusText(), "No Signal");
    feed(*model, 70.0, 0.1);
    EXPECT_EQ(description.statusText(), "Normal");
    EXPECT_EQ(description.statusColorRole(), static_cast<int>(Theme::Role::green));
    feed(*model, 88.0, 0.1);
    EXPECT_EQ(description.statusText(), "Elevated");
    EXPECT_EQ(description.statusColorRole(), static_cast<int>(Theme::Role::orange));
    feed(*model, 99.0, 0.1);
    EXPECT_EQ(description.statusText(), "High");
    EXPECT_EQ(description.statusColorRole(), static_cast<int>(Theme::Role::red));
    feed(*model, 99.0, 0.1, -1.0, true);
    EXPECT_EQ(description.status(), Status::inputOverload);
    EXPECT_EQ(description.statusText(), "Input Overload");
    EXPECT_EQ(description.statusColorRole(), static_cast<int>(Theme::Role::red));
}

TEST_F(MeterDescriptionModelTest, UnhingedWordingChangesTheVisibleTextOnly)
{
    const std::pair<Status, const char*> table[] = {
        {Status::noSignal, "Is this shit even plugged in?"},
        {Status::inputOverload, "Clipping like a bastard"},
        {Status::high, "WHAT THE FUCK, TURN IT DOWN"},
        {Status::elevated, "Getting fucking loud"},
        {Status::normal, "Chill as fuck"},
    };
    for (const auto& [status, text] : table)
        EXPECT_EQ(MeterDescriptionModel::text(status, true), text);

    feed(*model, 99.0, 0.1);
    QSignalSpy changes(&description, &MeterDescriptionModel::statusTextChanged);
    model->display().setUnhingedMode(true);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(description.statusText(), "WHAT THE FUCK, TURN IT DOWN");
    EXPECT_EQ(description.statusAccessibleText(), "High");
    model->display().setUnhingedMode(false);
    EXPECT_EQ(description.statusText(), "High");
}

TEST_F(MeterDescriptionModelTest, UncalibratedWarningShowsUntilCalibrated)
{
    EXPECT_TRUE(description.showsUncalibrated());
    EXPECT_EQ(description.uncalibratedText(), "Uncalibrated");
    EXPECT_EQ(description.uncalibratedColorRole(), static_cast<int>(Theme::Role::orange));
    EXPECT_EQ(description.uncalibratedHelp(),
        "Readings aren't accurate until you calibrate your microphone. Click to open "
        "Settings.");
    model->display().setUnhingedMode(true);
    EXPECT_EQ(description.uncalibratedText(), "Uncalibrated (it's lying to you)");

    model->measurement().setCalibrationDate(clock);
    EXPECT_FALSE(description.showsUncalibrated());
}

TEST_F(MeterDescriptionModelTest, MeterSettingShowsWeightingAndResponseSymbols)
{
    EXPECT_EQ(description.weightingText(), "A");
    EXPECT_EQ(description.responseText(), "FAST");
    QSignalSpy changes(&description, &MeterDescriptionModel::meterSettingChanged);
    model->measurement().setWeighting(FrequencyWeighting::c);
    model->measurement().setResponse(TimeWeighting::slow);
    EXPECT_EQ(description.weightingText(), "C");
    EXPECT_EQ(description.responseText(), "SLOW");
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(MeterDescriptionModelTest, ClickingTheWarningAsksForSettings)
{
    QSignalSpy requests(&description, &MeterDescriptionModel::settingsRequested);
    description.openSettings();
    EXPECT_EQ(requests.count(), 1);
}
