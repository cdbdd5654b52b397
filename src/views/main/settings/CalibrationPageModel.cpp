#include "views/main/settings/CalibrationPageModel.h"

#include <QDateTime>
#include <QLocale>
#include <cmath>

#include "views/components/FrequencyText.h"
#include "views/components/Theme.h"
#include "views/main/settings/CorrectionFile.h"

namespace ostrel {

CalibrationPageModel::CalibrationPageModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void CalibrationPageModel::setMode(AppModel::Mode value)
{
    if (mode_ == value) return;
    mode_ = value;
    emit modeChanged();
    refresh();
}

QString CalibrationPageModel::offsetText(double offset)
{
    // Rounded first, so -0.04 reads "+0.0" and not "-0.0".
    const double shown = std::round(offset * 10.0) / 10.0;
    const QString number = QString::number(std::abs(shown), 'f', 1);
    return (shown < 0.0 ? QStringLiteral("-") : QStringLiteral("+")) + number
        + QStringLiteral(" dB");
}

QString CalibrationPageModel::dateText(const std::optional<Date>& date)
{
    if (!date) return QStringLiteral("Never");
    const auto milliseconds
        = std::chrono::duration_cast<std::chrono::milliseconds>(date->time_since_epoch()).count();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds).toLocalTime();
    return QLocale(QLocale::English).toString(local, QStringLiteral("d MMM yyyy, h:mm AP"));
}

QString CalibrationPageModel::lastCalibratedText() const
{
    return dateText(measurement_ ? measurement_->calibrationDate() : std::nullopt);
}

QString CalibrationPageModel::referenceText() const
{
    const double level = measurement_ ? measurement_->calibratorReferenceLevel()
                                      : MeasurementSettings::calibratorReferenceLevelKey.fallback;
    return QString::number(level, 'f', 1) + QStringLiteral(" dB SPL");
}

bool CalibrationPageModel::canCalibrate() const
{
    if (mode_ != AppModel::Mode::live) return true;
    return audio_ && audio_->status() == AudioInput::Status::running;
}

double CalibrationPageModel::calibrationOffset() const
{
    return measurement_ ? measurement_->calibrationOffset()
                        : MeasurementSettings::uncalibratedOffset;
}

void CalibrationPageModel::setCalibrationOffset(double value)
{
    if (measurement_ && std::isfinite(value)) measurement_->setCalibrationOffset(value);
}

void CalibrationPageModel::resetCalibration()
{
    if (canReset()) measurement_->resetCalibration();
}

int CalibrationPageModel::destructiveColorRole()
{
    return static_cast<int>(Theme::Role::red);
}

QString CalibrationPageModel::correctionText() const
{
    if (!hasCorrection()) return QStringLiteral("None");
    return QString::fromStdString(measurement_->microphoneCorrection()->name());
}

void CalibrationPageModel::removeCorrection()
{
    setLoadError({});
    if (measurement_) measurement_->setMicrophoneCorrection(std::nullopt);
}

QString CalibrationPageModel::coversText() const
{
    if (!hasCorrection()) return {};
    const auto& correction = *measurement_->microphoneCorrection();
    const auto [lowest, highest] = correction.frequencyRange();
    return FrequencyText::hertz(lowest) + QStringLiteral(" \u2013 ") + FrequencyText::hertz(highest)
        + QStringLiteral(", ") + QString::number(static_cast<long long>(correction.points().size()))
        + QStringLiteral(" points");
}

bool CalibrationPageModel::loadCorrectionFile(const QUrl& file)
{
    auto loaded = CorrectionFile::load(file.isLocalFile() ? file.toLocalFile() : file.toString());
    if (const auto* message = std::get_if<QString>(&loaded)) {
        setLoadError(*message);
        return false;
    }
    setLoadError({});
    if (measurement_)
        measurement_->setMicrophoneCorrection(std::get<MicrophoneCorrection>(std::move(loaded)));
    return true;
}

int CalibrationPageModel::warningColorRole()
{
    return static_cast<int>(Theme::Role::orange);
}

void CalibrationPageModel::setLoadError(const QString& value)
{
    if (loadError_ == value) return;
    loadError_ = value;
    emit loadErrorChanged();
}

void CalibrationPageModel::attach()
{
    watch(measurement_);
    watch(audio_);
    if (measurement_) {
        for (auto signal : {&MeasurementSettings::calibrationOffsetChanged,
                 &MeasurementSettings::calibrationDateChanged,
                 &MeasurementSettings::calibratorReferenceLevelChanged,
                 &MeasurementSettings::microphoneCorrectionChanged})
            track(connect(measurement_, signal, this, &CalibrationPageModel::refresh));
    }
    if (audio_)
        track(connect(audio_, &AudioInput::statusChanged, this, &CalibrationPageModel::refresh));
}

void CalibrationPageModel::refresh()
{
    emit valuesChanged();
}

} // namespace ostrel
