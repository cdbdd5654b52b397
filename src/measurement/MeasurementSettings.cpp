#include "measurement/MeasurementSettings.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ostrel {

namespace {

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

// Kept as compact JSON text. Corrupt JSON reads as absent, silently, and the key stays until the
// next assignment.
std::optional<std::optional<MicrophoneCorrection>> parseCorrection(const QString& raw)
{
    const QJsonDocument document = QJsonDocument::fromJson(raw.toUtf8());
    if (!document.isObject())
        return std::optional<std::optional<MicrophoneCorrection>>(std::nullopt);
    return std::optional(MicrophoneCorrection::fromJson(document.object()));
}

QVariant formatCorrection(const std::optional<MicrophoneCorrection>& value)
{
    if (!value) return {};
    return QString::fromUtf8(QJsonDocument(value->toJson()).toJson(QJsonDocument::Compact));
}

std::optional<FrequencyWeighting> weightingFromRaw(std::string_view raw)
{
    return frequencyWeightingFromRawValue(raw);
}

std::string_view weightingToRaw(FrequencyWeighting value)
{
    return rawValue(value);
}

std::optional<TimeWeighting> responseFromRaw(std::string_view raw)
{
    return timeWeightingFromRawValue(raw);
}

std::string_view responseToRaw(TimeWeighting value)
{
    return rawValue(value);
}

using WeightingText = RawTextSetting<FrequencyWeighting, &weightingFromRaw, &weightingToRaw>;
using ResponseText = RawTextSetting<TimeWeighting, &responseFromRaw, &responseToRaw>;

} // namespace

const Setting<FrequencyWeighting> MeasurementSettings::weightingKey {
    "weighting", FrequencyWeighting::a, &WeightingText::parse, &WeightingText::format};
const Setting<TimeWeighting> MeasurementSettings::responseKey {
    "response", TimeWeighting::fast, &ResponseText::parse, &ResponseText::format};
const Setting<double> MeasurementSettings::calibrationOffsetKey {
    "calibrationOffset", uncalibratedOffset};
const Setting<std::optional<Date>> MeasurementSettings::calibrationDateKey {
    "calibrationDate", std::nullopt};
const Setting<double> MeasurementSettings::calibratorReferenceLevelKey {
    "calibratorReferenceLevel", 94.0};
const Setting<std::optional<MicrophoneCorrection>> MeasurementSettings::microphoneCorrectionKey {
    "microphoneCorrection", std::nullopt, &parseCorrection, &formatCorrection};

MeasurementSettings::MeasurementSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      weighting_(read(weightingKey)),
      response_(read(responseKey)),
      calibrationOffset_(read(calibrationOffsetKey)),
      calibrationDate_(read(calibrationDateKey)),
      calibratorReferenceLevel_(read(calibratorReferenceLevelKey)),
      microphoneCorrection_(read(microphoneCorrectionKey))
{
}

void MeasurementSettings::setWeighting(FrequencyWeighting value)
{
    if (assign(weighting_, value, weightingKey, &MeasurementSettings::weightingChanged))
        emit meterSettingChanged();
}

void MeasurementSettings::setResponse(TimeWeighting value)
{
    if (assign(response_, value, responseKey, &MeasurementSettings::responseChanged))
        emit meterSettingChanged();
}

void MeasurementSettings::setCalibrationOffset(double value)
{
    assign(calibrationOffset_, value, calibrationOffsetKey,
        &MeasurementSettings::calibrationOffsetChanged);
}

void MeasurementSettings::setCalibrationDate(const std::optional<Date>& value)
{
    assign(
        calibrationDate_, value, calibrationDateKey, &MeasurementSettings::calibrationDateChanged);
}

void MeasurementSettings::setCalibratorReferenceLevel(double value)
{
    assign(calibratorReferenceLevel_, value, calibratorReferenceLevelKey,
        &MeasurementSettings::calibratorReferenceLevelChanged);
}

void MeasurementSettings::setMicrophoneCorrection(const std::optional<MicrophoneCorrection>& value)
{
    assign(microphoneCorrection_, value, microphoneCorrectionKey,
        &MeasurementSettings::microphoneCorrectionChanged);
}

QString MeasurementSettings::meterSetting() const
{
    return text(symbol(weighting_)) + QStringLiteral(" / ") + text(title(response_));
}

void MeasurementSettings::resetCalibration()
{
    setCalibrationOffset(uncalibratedOffset);
    setCalibrationDate(std::nullopt);
}

} // namespace ostrel
