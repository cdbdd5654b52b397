#pragma once

// What the meter measures with: the weighting and response, the calibration and the microphone's
// correction curve. The input's own choice of device and channel is `InputSettings`.
#include <optional>

#include <QString>

#include "common/Date.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MicrophoneCorrection.h"
#include "measurement/TimeWeighting.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class MeasurementSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(double calibrationOffset READ calibrationOffset WRITE setCalibrationOffset NOTIFY
            calibrationOffsetChanged)
    Q_PROPERTY(double calibratorReferenceLevel READ calibratorReferenceLevel WRITE
            setCalibratorReferenceLevel NOTIFY calibratorReferenceLevelChanged)
    Q_PROPERTY(bool isCalibrated READ isCalibrated NOTIFY calibrationDateChanged)
    Q_PROPERTY(QString meterSetting READ meterSetting NOTIFY meterSettingChanged)

public:
    // The uncalibrated offset, which `resetCalibration` restores.
    static constexpr double uncalibratedOffset = 120.0;

    static const Setting<FrequencyWeighting> weightingKey;
    static const Setting<TimeWeighting> responseKey;
    static const Setting<double> calibrationOffsetKey;
    static const Setting<std::optional<Date>> calibrationDateKey;
    static const Setting<double> calibratorReferenceLevelKey;
    static const Setting<std::optional<MicrophoneCorrection>> microphoneCorrectionKey;

    explicit MeasurementSettings(SettingsStore& store, QObject* parent = nullptr);

    FrequencyWeighting weighting() const { return weighting_; }
    void setWeighting(FrequencyWeighting value);
    TimeWeighting response() const { return response_; }
    void setResponse(TimeWeighting value);
    double calibrationOffset() const { return calibrationOffset_; }
    void setCalibrationOffset(double value);
    const std::optional<Date>& calibrationDate() const { return calibrationDate_; }
    void setCalibrationDate(const std::optional<Date>& value);
    double calibratorReferenceLevel() const { return calibratorReferenceLevel_; }
    void setCalibratorReferenceLevel(double value);
    const std::optional<MicrophoneCorrection>& microphoneCorrection() const
    {
        return microphoneCorrection_;
    }
    void setMicrophoneCorrection(const std::optional<MicrophoneCorrection>& value);

    bool isCalibrated() const { return calibrationDate_.has_value(); }
    // "A / Fast": what sessions, cue records and the crew mirror carry as the meter setting.
    QString meterSetting() const;
    // Back to the uncalibrated offset, forgetting the date; the reference level and the
    // correction stay.
    void resetCalibration();

signals:
    void weightingChanged();
    void responseChanged();
    void calibrationOffsetChanged();
    void calibrationDateChanged();
    void calibratorReferenceLevelChanged();
    void microphoneCorrectionChanged();
    void meterSettingChanged();

private:
    FrequencyWeighting weighting_;
    TimeWeighting response_;
    double calibrationOffset_;
    std::optional<Date> calibrationDate_;
    double calibratorReferenceLevel_;
    std::optional<MicrophoneCorrection> microphoneCorrection_;
};

} // namespace ostrel
