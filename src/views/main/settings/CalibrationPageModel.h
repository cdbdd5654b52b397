#pragma once

// The Calibration page of the settings: the offset, the date and the reference level as text,
// whether the assistant can measure now, the microphone's correction file with what it covers and
// why a file was refused, and the advanced offset with its reset.
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include "audio/AudioInput.h"
#include "measurement/MeasurementSettings.h"
#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CalibrationPageModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeasurementSettings* measurement READ measurement WRITE setMeasurement NOTIFY
            measurementChanged)
    Q_PROPERTY(ostrel::AudioInput* audio READ audio WRITE setAudio NOTIFY audioChanged)
    Q_PROPERTY(ostrel::AppModel::Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(QString offsetText READ offsetText NOTIFY valuesChanged)
    Q_PROPERTY(QString lastCalibratedText READ lastCalibratedText NOTIFY valuesChanged)
    Q_PROPERTY(QString referenceText READ referenceText NOTIFY valuesChanged)
    Q_PROPERTY(bool canCalibrate READ canCalibrate NOTIFY valuesChanged)
    Q_PROPERTY(double calibrationOffset READ calibrationOffset WRITE setCalibrationOffset NOTIFY
            valuesChanged)
    Q_PROPERTY(bool canReset READ canReset NOTIFY valuesChanged)
    Q_PROPERTY(int destructiveColorRole READ destructiveColorRole CONSTANT)
    Q_PROPERTY(QString correctionText READ correctionText NOTIFY valuesChanged)
    Q_PROPERTY(bool hasCorrection READ hasCorrection NOTIFY valuesChanged)
    Q_PROPERTY(QString coversText READ coversText NOTIFY valuesChanged)
    Q_PROPERTY(QString loadError READ loadError NOTIFY loadErrorChanged)
    Q_PROPERTY(int warningColorRole READ warningColorRole CONSTANT)

public:
    explicit CalibrationPageModel(QObject* parent = nullptr);

    MeasurementSettings* measurement() const { return measurement_.data(); }
    void setMeasurement(MeasurementSettings* value)
    {
        setSource(measurement_, value, &CalibrationPageModel::measurementChanged);
    }
    AudioInput* audio() const { return audio_.data(); }
    void setAudio(AudioInput* value)
    {
        setSource(audio_, value, &CalibrationPageModel::audioChanged);
    }
    AppModel::Mode mode() const { return mode_; }
    void setMode(AppModel::Mode value);

    // "+0.0 dB": one decimal place and a sign always.
    static QString offsetText(double offset);
    QString offsetText() const { return offsetText(calibrationOffset()); }
    // "24 Nov 2026, 9:05 PM" in local time, or "Never".
    static QString dateText(const std::optional<Date>& date);
    QString lastCalibratedText() const;
    // "94.0 dB SPL".
    QString referenceText() const;
    // A live station with no working input has nothing to measure; other modes always can.
    bool canCalibrate() const;
    double calibrationOffset() const;
    // Dropped unless a finite number.
    void setCalibrationOffset(double value);
    bool canReset() const { return measurement_ && measurement_->isCalibrated(); }
    Q_INVOKABLE void resetCalibration();
    // The reset is drawn in red.
    static int destructiveColorRole();
    // The correction file's name, or "None".
    QString correctionText() const;
    bool hasCorrection() const { return measurement_ && measurement_->microphoneCorrection(); }
    // Removes the correction in force, and with it any message of a failed load.
    Q_INVOKABLE void removeCorrection();
    // "20.0 Hz – 20.0 kHz, 200 points"; empty without a correction.
    QString coversText() const;
    // Why the last file chosen was refused; empty after a success or a removal.
    const QString& loadError() const { return loadError_; }
    // Reads the chosen calibration file and, when it parses, puts it in force. A file that fails
    // leaves the correction in force as it was and says why in `loadError`.
    Q_INVOKABLE bool loadCorrectionFile(const QUrl& file);
    // The failed load's symbol is drawn in orange.
    static int warningColorRole();

signals:
    void measurementChanged();
    void audioChanged();
    void modeChanged();
    void valuesChanged();
    void loadErrorChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeasurementSettings> measurement_;
    QPointer<AudioInput> audio_;
    AppModel::Mode mode_ = AppModel::Mode::inert;
    QString loadError_;

    void setLoadError(const QString& value);
};

} // namespace ostrel
