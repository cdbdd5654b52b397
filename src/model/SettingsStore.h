#pragma once

// Typed reads and writes over the platform's preference store. Every read falls back to the
// given default when the key is missing or its value does not parse as the key's type; an INI
// store keeps no types, so "another type" means "text that is not of this type".
#include <optional>

#include <QSettings>
#include <QString>

#include "common/Date.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MicrophoneCorrection.h"
#include "measurement/SpectrumResolution.h"
#include "measurement/TimeWeighting.h"
#include "model/AppearanceMode.h"
#include "model/SpectrumStyle.h"
#include "network/CrewRole.h"
#include "qlab/TimecodeRate.h"

namespace ostrel {

class SettingsStore {
public:
    explicit SettingsStore(QSettings& store) : store_(store) {}

    QString readString(const QString& key, const QString& fallback) const;
    qint64 readInteger(const QString& key, qint64 fallback) const;
    double readDouble(const QString& key, double fallback) const;
    bool readBool(const QString& key, bool fallback) const;
    std::optional<Date> readDate(const QString& key, std::optional<Date> fallback) const;
    std::optional<MicrophoneCorrection> readCorrection(
        const QString& key, const std::optional<MicrophoneCorrection>& fallback) const;
    FrequencyWeighting readWeighting(const QString& key, FrequencyWeighting fallback) const;
    TimeWeighting readResponse(const QString& key, TimeWeighting fallback) const;
    TimecodeRate readTimecodeRate(const QString& key, TimecodeRate fallback) const;
    AppearanceMode readAppearance(const QString& key, AppearanceMode fallback) const;
    SpectrumResolution readResolution(const QString& key, SpectrumResolution fallback) const;
    SpectrumStyle readStyle(const QString& key, SpectrumStyle fallback) const;
    CrewRole readCrewRole(const QString& key, CrewRole fallback) const;

    void write(const QString& key, const QString& value);
    void write(const QString& key, qint64 value);
    void write(const QString& key, double value);
    void write(const QString& key, bool value);
    // Absent removes the key.
    void write(const QString& key, const std::optional<Date>& value);
    void write(const QString& key, const std::optional<MicrophoneCorrection>& value);
    void write(const QString& key, FrequencyWeighting value);
    void write(const QString& key, TimeWeighting value);
    void write(const QString& key, TimecodeRate value);
    void write(const QString& key, AppearanceMode value);
    void write(const QString& key, SpectrumResolution value);
    void write(const QString& key, SpectrumStyle value);
    void write(const QString& key, CrewRole value);

    // 0.2 ... 1.0: the screen never dims to nothing.
    static double clampedBrightness(double value);

private:
    std::optional<QString> rawText(const QString& key) const;
    void put(const QString& key, const QVariant& value);

    QSettings& store_;
};

} // namespace ostrel
