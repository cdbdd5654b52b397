#include "views/level/MeterDescriptionModel.h"

#include <string_view>

#include "measurement/FrequencyWeighting.h"
#include "measurement/TimeWeighting.h"
#include "views/components/Unhinged.h"

namespace ostrel {

namespace {

QString fromView(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

MeterDescriptionModel::MeterDescriptionModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

MeterDescriptionModel::Status MeterDescriptionModel::status(
    std::optional<double> level, bool hasSignal, bool isClipping, LevelRange range)
{
    if (!hasSignal || !level) return Status::noSignal;
    if (isClipping) return Status::inputOverload;
    switch (range) {
    case LevelRange::high:
        return Status::high;
    case LevelRange::elevated:
        return Status::elevated;
    case LevelRange::normal:
        return Status::normal;
    }
    return Status::normal;
}

QString MeterDescriptionModel::text(Status status, bool unhinged)
{
    switch (status) {
    case Status::noSignal:
        return unhinged ? QStringLiteral("Is this shit even plugged in?")
                        : QStringLiteral("No Signal");
    case Status::inputOverload:
        return unhinged ? QStringLiteral("Clipping like a bastard")
                        : QStringLiteral("Input Overload");
    case Status::high:
        return unhinged ? Unhinged::title(LevelRange::high) : QStringLiteral("High");
    case Status::elevated:
        return unhinged ? Unhinged::title(LevelRange::elevated) : QStringLiteral("Elevated");
    case Status::normal:
        return unhinged ? Unhinged::title(LevelRange::normal) : QStringLiteral("Normal");
    }
    return QString();
}

Theme::Role MeterDescriptionModel::colorRole(Status status)
{
    switch (status) {
    case Status::noSignal:
        return Theme::Role::secondary;
    case Status::inputOverload:
    case Status::high:
        return Theme::Role::red;
    case Status::elevated:
        return Theme::Role::orange;
    case Status::normal:
        return Theme::Role::green;
    }
    return Theme::Role::secondary;
}

void MeterDescriptionModel::setSize(double value)
{
    if (value == size_) return;
    size_ = value;
    emit sizeChanged();
}

QString MeterDescriptionModel::uncalibratedHelp() const
{
    return QStringLiteral("Readings aren't accurate until you calibrate your microphone. "
                          "Click to open Settings.");
}

void MeterDescriptionModel::openSettings()
{
    emit settingsRequested();
}

void MeterDescriptionModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    watch(measurement_);
    watch(display_);
    watch(station_);
    if (station_) {
        track(connect(station_, &AppModel::displayMeterSettingChanged, this, update));
        track(connect(station_, &AppModel::displayIsCalibratedChanged, this, update));
    }
    if (meter_) {
        track(connect(meter_, &MeterModel::levelChanged, this, update));
        track(connect(meter_, &MeterModel::hasSignalChanged, this, update));
        track(connect(meter_, &MeterModel::isClippingChanged, this, update));
    }
    if (display_) {
        track(connect(display_, &DisplaySettings::elevatedThresholdChanged, this, update));
        track(connect(display_, &DisplaySettings::highThresholdChanged, this, update));
        track(connect(display_, &DisplaySettings::unhingedModeChanged, this, update));
    }
    if (measurement_) {
        track(connect(measurement_, &MeasurementSettings::weightingChanged, this, update));
        track(connect(measurement_, &MeasurementSettings::responseChanged, this, update));
        track(connect(measurement_, &MeasurementSettings::calibrationDateChanged, this, update));
    }
}

void MeterDescriptionModel::refresh()
{
    if (!meter_ || !measurement_ || !display_) {
        setMeterSetting(QString(), QString());
        setStatus(Status::noSignal);
        setStatusText(text(Status::noSignal, false));
        setShowsUncalibrated(false);
        setUncalibratedText(QStringLiteral("Uncalibrated"));
        return;
    }
    const MeterModel& meter = *meter_;
    const bool unhinged = display_->unhingedMode();
    const auto level = meter.level();
    const LevelRange range = level ? display_->levelRange(*level) : LevelRange::normal;

    if (station_) {
        const AppModel::MeterSettingText shown = station_->displayMeterSetting();
        setMeterSetting(shown.weighting, shown.response);
    } else {
        setMeterSetting(fromView(symbol(measurement_->weighting())),
            fromView(symbol(measurement_->response())));
    }
    setStatus(status(level, meter.hasSignal(), meter.isClipping(), range));
    setStatusText(text(status_, unhinged));
    setShowsUncalibrated(
        station_ ? !station_->displayIsCalibrated() : !measurement_->isCalibrated());
    setUncalibratedText(unhinged ? QStringLiteral("Uncalibrated (it's lying to you)")
                                 : QStringLiteral("Uncalibrated"));
}

void MeterDescriptionModel::setMeterSetting(const QString& weighting, const QString& response)
{
    if (weighting == weightingText_ && response == responseText_) return;
    weightingText_ = weighting;
    responseText_ = response;
    emit meterSettingChanged();
}

void MeterDescriptionModel::setStatus(Status value)
{
    if (value == status_) return;
    status_ = value;
    emit statusChanged();
}

void MeterDescriptionModel::setStatusText(const QString& value)
{
    if (value == statusText_) return;
    statusText_ = value;
    emit statusTextChanged();
}

void MeterDescriptionModel::setShowsUncalibrated(bool value)
{
    if (value == showsUncalibrated_) return;
    showsUncalibrated_ = value;
    emit showsUncalibratedChanged();
}

void MeterDescriptionModel::setUncalibratedText(const QString& value)
{
    if (value == uncalibratedText_) return;
    uncalibratedText_ = value;
    emit uncalibratedTextChanged();
}

} // namespace ostrel
