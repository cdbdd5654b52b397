#pragma once

// The line under the number: the meter setting, the status in words and, until the microphone
// is calibrated, a warning that the readings are not accurate.
#include <optional>

#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "measurement/LevelRange.h"
#include "measurement/MeasurementSettings.h"
#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "station/AppModel.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class MeterDescriptionModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(ostrel::MeasurementSettings* measurement READ measurement WRITE setMeasurement NOTIFY
            measurementChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    // The main screen's station: a secondary shows its primary's setting and calibration.
    Q_PROPERTY(ostrel::AppModel* station READ station WRITE setStation NOTIFY stationChanged)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(double spacing READ spacing NOTIFY sizeChanged)
    Q_PROPERTY(QString weightingText READ weightingText NOTIFY meterSettingChanged)
    Q_PROPERTY(QString responseText READ responseText NOTIFY meterSettingChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusTextChanged)
    Q_PROPERTY(int statusColorRole READ statusColorRole NOTIFY statusChanged)
    Q_PROPERTY(QString statusAccessibleText READ statusAccessibleText NOTIFY statusChanged)
    Q_PROPERTY(bool showsUncalibrated READ showsUncalibrated NOTIFY showsUncalibratedChanged)
    Q_PROPERTY(QString uncalibratedText READ uncalibratedText NOTIFY uncalibratedTextChanged)
    Q_PROPERTY(QString uncalibratedHelp READ uncalibratedHelp CONSTANT)
    Q_PROPERTY(int uncalibratedColorRole READ uncalibratedColorRole CONSTANT)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value)
    {
        setSource(meter_, value, &MeterDescriptionModel::meterChanged);
    }
    MeasurementSettings* measurement() const { return measurement_.data(); }
    void setMeasurement(MeasurementSettings* value)
    {
        setSource(measurement_, value, &MeterDescriptionModel::measurementChanged);
    }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &MeterDescriptionModel::displayChanged);
    }

    AppModel* station() const { return station_.data(); }
    void setStation(AppModel* value)
    {
        setSource(station_, value, &MeterDescriptionModel::stationChanged);
    }

    enum class Status { noSignal, inputOverload, high, elevated, normal };
    Q_ENUM(Status)

    explicit MeterDescriptionModel(QObject* parent = nullptr);

    // No signal outranks an overload, which outranks the range. Without any level yet there is
    // nothing to judge, which reads as no signal, like the number.
    static Status status(
        std::optional<double> level, bool hasSignal, bool isClipping, LevelRange range);
    static QString text(Status status, bool unhinged);
    static Theme::Role colorRole(Status status);

    double size() const { return size_; }
    void setSize(double value);
    double spacing() const { return 0.5 * size_; }
    QString weightingText() const { return weightingText_; }
    QString responseText() const { return responseText_; }
    Status status() const { return status_; }
    QString statusText() const { return statusText_; }
    int statusColorRole() const { return static_cast<int>(colorRole(status_)); }
    // Screen readers keep the normal wording.
    QString statusAccessibleText() const { return text(status_, false); }
    bool showsUncalibrated() const { return showsUncalibrated_; }
    QString uncalibratedText() const { return uncalibratedText_; }
    QString uncalibratedHelp() const;
    int uncalibratedColorRole() const { return static_cast<int>(Theme::Role::orange); }

    // Settings open from here once they exist; the signal is the hook.
    Q_INVOKABLE void openSettings();

signals:
    void meterChanged();
    void measurementChanged();
    void displayChanged();
    void stationChanged();
    void sizeChanged();
    void meterSettingChanged();
    void statusChanged();
    void statusTextChanged();
    void showsUncalibratedChanged();
    void uncalibratedTextChanged();
    void settingsRequested();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    QPointer<MeasurementSettings> measurement_;
    QPointer<DisplaySettings> display_;
    QPointer<AppModel> station_;
    void setMeterSetting(const QString& weighting, const QString& response);
    void setStatus(Status value);
    void setStatusText(const QString& value);
    void setShowsUncalibrated(bool value);
    void setUncalibratedText(const QString& value);

    double size_ = 22.0;
    QString weightingText_;
    QString responseText_;
    Status status_ = Status::noSignal;
    QString statusText_;
    bool showsUncalibrated_ = false;
    QString uncalibratedText_;
};

} // namespace ostrel
