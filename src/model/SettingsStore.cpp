#include "model/SettingsStore.h"

#include <cmath>

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include "model/IsoDate.h"

namespace ostrel {

namespace {

std::string utf8(const QString& text)
{
    return text.toStdString();
}

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

} // namespace

std::optional<QString> SettingsStore::rawText(const QString& key) const
{
    const QVariant value = store_.value(key);
    if (!value.isValid() || value.isNull()) return std::nullopt;
    // A list or a map under a scalar key is of another type.
    if (value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QVariantList
        || value.typeId() == QMetaType::QVariantMap)
        return std::nullopt;
    return value.toString();
}

QString SettingsStore::readString(const QString& key, const QString& fallback) const
{
    return rawText(key).value_or(fallback);
}

qint64 SettingsStore::readInteger(const QString& key, qint64 fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    bool ok = false;
    const qint64 value = raw->trimmed().toLongLong(&ok);
    return ok ? value : fallback;
}

double SettingsStore::readDouble(const QString& key, double fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    bool ok = false;
    const double value = raw->trimmed().toDouble(&ok);
    return ok && std::isfinite(value) ? value : fallback;
}

bool SettingsStore::readBool(const QString& key, bool fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    const QString value = raw->trimmed().toLower();
    if (value == "true" || value == "1") return true;
    if (value == "false" || value == "0") return false;
    return fallback;
}

std::optional<Date> SettingsStore::readDate(const QString& key, std::optional<Date> fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    // Anything but a date reads as absent.
    return IsoDate::parse(*raw);
}

std::optional<MicrophoneCorrection> SettingsStore::readCorrection(
    const QString& key, const std::optional<MicrophoneCorrection>& fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    // Corrupt JSON reads as absent, silently; the key stays until the next assignment.
    const QJsonDocument document = QJsonDocument::fromJson(raw->toUtf8());
    if (!document.isObject()) return std::nullopt;
    return MicrophoneCorrection::fromJson(document.object());
}

FrequencyWeighting SettingsStore::readWeighting(const QString& key, FrequencyWeighting fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    return frequencyWeightingFromRawValue(utf8(*raw)).value_or(fallback);
}

TimeWeighting SettingsStore::readResponse(const QString& key, TimeWeighting fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    return timeWeightingFromRawValue(utf8(*raw)).value_or(fallback);
}

TimecodeRate SettingsStore::readTimecodeRate(const QString& key, TimecodeRate fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    bool ok = false;
    const qint64 value = raw->trimmed().toLongLong(&ok);
    if (!ok) return fallback;
    return TimecodeRates::fromRawValue(value).value_or(fallback);
}

AppearanceMode SettingsStore::readAppearance(const QString& key, AppearanceMode fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    return AppearanceModes::fromRawValue(utf8(*raw)).value_or(fallback);
}

SpectrumResolution SettingsStore::readResolution(const QString& key,
                                                 SpectrumResolution fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    bool ok = false;
    const int value = raw->trimmed().toInt(&ok);
    if (!ok) return fallback;
    return SpectrumResolutions::fromRawValue(value).value_or(fallback);
}

SpectrumStyle SettingsStore::readStyle(const QString& key, SpectrumStyle fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    return SpectrumStyles::fromRawValue(utf8(*raw)).value_or(fallback);
}

CrewRole SettingsStore::readCrewRole(const QString& key, CrewRole fallback) const
{
    const auto raw = rawText(key);
    if (!raw) return fallback;
    return CrewRoles::fromRawValue(utf8(*raw)).value_or(fallback);
}

void SettingsStore::put(const QString& key, const QVariant& value)
{
    store_.setValue(key, value);
    // At once: a crash a moment later must not lose the change.
    store_.sync();
}

void SettingsStore::write(const QString& key, const QString& value)
{
    put(key, value);
}

void SettingsStore::write(const QString& key, qint64 value)
{
    put(key, value);
}

void SettingsStore::write(const QString& key, double value)
{
    put(key, value);
}

void SettingsStore::write(const QString& key, bool value)
{
    put(key, value);
}

void SettingsStore::write(const QString& key, const std::optional<Date>& value)
{
    if (!value) {
        store_.remove(key);
        store_.sync();
        return;
    }
    put(key, IsoDate::string(*value));
}

void SettingsStore::write(const QString& key, const std::optional<MicrophoneCorrection>& value)
{
    if (!value) {
        store_.remove(key);
        store_.sync();
        return;
    }
    put(key, QString::fromUtf8(QJsonDocument(value->toJson()).toJson(QJsonDocument::Compact)));
}

void SettingsStore::write(const QString& key, FrequencyWeighting value)
{
    put(key, text(rawValue(value)));
}

void SettingsStore::write(const QString& key, TimeWeighting value)
{
    put(key, text(rawValue(value)));
}

void SettingsStore::write(const QString& key, TimecodeRate value)
{
    put(key, TimecodeRates::rawValue(value));
}

void SettingsStore::write(const QString& key, AppearanceMode value)
{
    put(key, text(AppearanceModes::rawValue(value)));
}

void SettingsStore::write(const QString& key, SpectrumResolution value)
{
    put(key, SpectrumResolutions::rawValue(value));
}

void SettingsStore::write(const QString& key, SpectrumStyle value)
{
    put(key, text(SpectrumStyles::rawValue(value)));
}

void SettingsStore::write(const QString& key, CrewRole value)
{
    put(key, text(CrewRoles::rawValue(value)));
}

double SettingsStore::clampedBrightness(double value)
{
    if (!(value > 0.2)) return 0.2; // NaN too
    return value > 1.0 ? 1.0 : value;
}

} // namespace ostrel
