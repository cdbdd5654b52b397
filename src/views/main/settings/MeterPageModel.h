#pragma once

// The Meter page of the settings: the weighting and response pickers with the footer of each
// choice, and the feedback warning's switch.
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "measurement/MeasurementSettings.h"
#include "model/DisplaySettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class MeterPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeasurementSettings* measurement READ measurement WRITE setMeasurement NOTIFY
            measurementChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(QStringList weightingOptions READ weightingOptions CONSTANT)
    Q_PROPERTY(int weightingIndex READ weightingIndex WRITE setWeightingIndex NOTIFY valuesChanged)
    Q_PROPERTY(QString weightingFooter READ weightingFooter NOTIFY valuesChanged)
    Q_PROPERTY(QStringList responseOptions READ responseOptions CONSTANT)
    Q_PROPERTY(int responseIndex READ responseIndex WRITE setResponseIndex NOTIFY valuesChanged)
    Q_PROPERTY(QString responseFooter READ responseFooter NOTIFY valuesChanged)
    Q_PROPERTY(bool feedbackWarningEnabled READ feedbackWarningEnabled WRITE
            setFeedbackWarningEnabled NOTIFY valuesChanged)
    Q_PROPERTY(QString feedbackFooter READ feedbackFooter CONSTANT)

public:
    explicit MeterPageModel(QObject* parent = nullptr);

    MeasurementSettings* measurement() const { return measurement_.data(); }
    void setMeasurement(MeasurementSettings* value)
    {
        setSource(measurement_, value, &MeterPageModel::measurementChanged);
    }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &MeterPageModel::displayChanged);
    }

    // Each weighting by its letter, in their declared order.
    static QStringList weightingOptions();
    int weightingIndex() const;
    // Out-of-range indices are dropped.
    void setWeightingIndex(int index);
    QString weightingFooter() const;
    static QStringList responseOptions();
    int responseIndex() const;
    void setResponseIndex(int index);
    QString responseFooter() const;
    bool feedbackWarningEnabled() const { return display_ && display_->feedbackWarningEnabled(); }
    void setFeedbackWarningEnabled(bool value);
    static QString feedbackFooter();

signals:
    void measurementChanged();
    void displayChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeasurementSettings> measurement_;
    QPointer<DisplaySettings> display_;
};

} // namespace ostrel
