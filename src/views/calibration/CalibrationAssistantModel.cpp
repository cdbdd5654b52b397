#include "views/calibration/CalibrationAssistantModel.h"

#include <QLocale>
#include <cmath>

#include "views/components/Theme.h"

namespace ostrel {

namespace {

QString oneDecimal(double value)
{
    return QLocale().toString(value, 'f', 1);
}

} // namespace

CalibrationAssistantModel::CalibrationAssistantModel(QObject* parent) : ViewModel(parent) { }

CalibrationAssistantModel::~CalibrationAssistantModel()
{
    if (isOpen_) cancel();
}

void CalibrationAssistantModel::setAppModel(AppModel* value)
{
    if (value == appModel_) return;
    if (isOpen_) cancel();
    setSource(appModel_, value, &CalibrationAssistantModel::appModelChanged);
}

QString CalibrationAssistantModel::offsetText(double offset)
{
    const QString number = oneDecimal(std::abs(offset));
    return (offset < 0.0 ? QStringLiteral("\u2212") : QStringLiteral("+")) + number
        + QStringLiteral(" dB");
}

void CalibrationAssistantModel::open()
{
    result_.reset();
    measuredReference_.reset();
    setProgress(0.0);
    setStep(Step::connect);
    if (!isOpen_) {
        isOpen_ = true;
        emit isOpenChanged();
    }
    // A calibrator's steady tone is exactly what the feedback detector looks for.
    if (appModel_) appModel_->setCalibrating(true);
}

void CalibrationAssistantModel::primary()
{
    switch (step_) {
    case Step::connect:
        setStep(Step::insert);
        break;
    case Step::insert:
        setStep(Step::calibrate);
        break;
    case Step::calibrate:
        measure();
        break;
    case Step::measuring:
        break;
    case Step::finished:
        if (isSuccess()) {
            if (appModel_) appModel_->applyCalibration(result_->offset);
            close();
        } else {
            measure();
        }
        break;
    }
}

void CalibrationAssistantModel::cancel()
{
    ++measurement_;
    if (appModel_ && appModel_->calibration().isMeasuring()) appModel_->calibration().cancel();
    close();
}

void CalibrationAssistantModel::measure()
{
    if (!appModel_) return;
    result_.reset();
    measuredReference_ = appModel_->settings().measurement().calibratorReferenceLevel();
    setProgress(0.0);
    setStep(Step::measuring);
    const int number = ++measurement_;
    QPointer<CalibrationAssistantModel> self(this);
    appModel_->measureCalibration(
        duration_,
        [self, number](double fraction) {
            if (self && self->measurement_ == number) self->setProgress(fraction);
        },
        [self, number](std::optional<CalibrationResult> result) {
            if (!self || self->measurement_ != number) return;
            self->result_
                = result.value_or(CalibrationResult::failure(CalibrationResult::Kind::noSignal));
            self->setStep(Step::finished);
        });
}

void CalibrationAssistantModel::close()
{
    if (appModel_) appModel_->setCalibrating(false);
    if (isOpen_) {
        isOpen_ = false;
        emit isOpenChanged();
    }
}

void CalibrationAssistantModel::setStep(Step step)
{
    step_ = step;
    emit pageChanged();
}

void CalibrationAssistantModel::setProgress(double value)
{
    if (value == progress_) return;
    progress_ = value;
    emit progressChanged();
}

bool CalibrationAssistantModel::isSuccess() const
{
    return step_ == Step::finished && result_ && result_->kind == CalibrationResult::Kind::success;
}

QString CalibrationAssistantModel::symbol() const
{
    switch (step_) {
    case Step::connect:
        return QStringLiteral("mic");
    case Step::insert:
        return QStringLiteral("tuningfork");
    case Step::calibrate:
        return QStringLiteral("speaker.wave.2");
    case Step::measuring:
        return QStringLiteral("waveform");
    case Step::finished:
        return isSuccess() ? QStringLiteral("checkmark.circle")
                           : QStringLiteral("exclamationmark.triangle");
    }
    return {};
}

int CalibrationAssistantModel::symbolColorRole() const
{
    switch (step_) {
    case Step::connect:
        return static_cast<int>(Theme::Role::accent);
    case Step::finished:
        return static_cast<int>(isSuccess() ? Theme::Role::green : Theme::Role::orange);
    default:
        return static_cast<int>(Theme::Role::secondary);
    }
}

QString CalibrationAssistantModel::title() const
{
    switch (step_) {
    case Step::connect:
        return QStringLiteral("Connect Your Microphone");
    case Step::insert:
        return QStringLiteral("Insert the Microphone");
    case Step::calibrate:
        return QStringLiteral("Turn On the Calibrator");
    case Step::measuring:
        return QStringLiteral("Listening");
    case Step::finished:
        return isSuccess() ? QStringLiteral("Calibration Complete")
                           : QStringLiteral("Calibration Didn't Finish");
    }
    return {};
}

QString CalibrationAssistantModel::text() const
{
    switch (step_) {
    case Step::connect:
        return QStringLiteral("Connect your measurement microphone to your audio interface and "
                              "turn on phantom power.");
    case Step::insert:
        return QStringLiteral(
            "Place the microphone fully inside the acoustic calibrator so it seals snugly.");
    case Step::calibrate:
        return QStringLiteral("Switch on the calibrator, then enter the level printed on it.");
    case Step::measuring:
        return QStringLiteral("Keep the calibrator steady and the room quiet.");
    case Step::finished:
        if (!result_) return {};
        if (const auto message = result_->failureMessage())
            return QString::fromUtf8(message->data(), static_cast<qsizetype>(message->size()));
        return {};
    }
    return {};
}

QString CalibrationAssistantModel::primaryTitle() const
{
    switch (step_) {
    case Step::connect:
    case Step::insert:
        return QStringLiteral("Continue");
    case Step::calibrate:
    case Step::measuring:
        return QStringLiteral("Calibrate");
    case Step::finished:
        return isSuccess() ? QStringLiteral("Done") : QStringLiteral("Try Again");
    }
    return {};
}

QString CalibrationAssistantModel::offsetText() const
{
    return isSuccess() ? offsetText(result_->offset) : QString();
}

QString CalibrationAssistantModel::measuredText() const
{
    if (!isSuccess()) return {};
    return oneDecimal(result_->measuredDBFS) + QStringLiteral(" dBFS at ")
        + oneDecimal(measuredReference_.value_or(referenceLevel())) + QStringLiteral(" dB SPL");
}

double CalibrationAssistantModel::referenceLevel() const
{
    return appModel_ ? appModel_->settings().measurement().calibratorReferenceLevel() : 94.0;
}

void CalibrationAssistantModel::setReferenceLevel(double value)
{
    if (appModel_) appModel_->settings().measurement().setCalibratorReferenceLevel(value);
}

void CalibrationAssistantModel::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    track(connect(&appModel_->settings().measurement(),
        &MeasurementSettings::calibratorReferenceLevelChanged, this,
        &CalibrationAssistantModel::referenceLevelChanged));
}

} // namespace ostrel
