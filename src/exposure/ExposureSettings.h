#pragma once

// Which rule the exposure is held to, and the window, limit, margin and peak limit of a custom
// one.
#include "exposure/ExposureProfile.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class ExposureSettings : public SettingsGroup {
    Q_OBJECT
    // The profile's raw value: "who", "swiss", "din", "uk" or "custom".
    Q_PROPERTY(QString profileName READ profileName WRITE setProfileName NOTIFY profileKindChanged)
    Q_PROPERTY(
        double customMinutes READ customMinutes WRITE setCustomMinutes NOTIFY customMinutesChanged)
    Q_PROPERTY(double customLimit READ customLimit WRITE setCustomLimit NOTIFY customLimitChanged)
    Q_PROPERTY(
        double customMargin READ customMargin WRITE setCustomMargin NOTIFY customMarginChanged)
    Q_PROPERTY(double customPeakLimit READ customPeakLimit WRITE setCustomPeakLimit NOTIFY
            customPeakLimitChanged)

public:
    static const Setting<ExposureProfileKind> profileKindKey;
    static const Setting<double> customMinutesKey;
    static const Setting<double> customLimitKey;
    static const Setting<double> customMarginKey;
    static const Setting<double> customPeakLimitKey;

    explicit ExposureSettings(SettingsStore& store, QObject* parent = nullptr);

    ExposureProfileKind profileKind() const { return profileKind_; }
    void setProfileKind(ExposureProfileKind value);
    double customMinutes() const { return customMinutes_; }
    void setCustomMinutes(double value);
    double customLimit() const { return customLimit_; }
    void setCustomLimit(double value);
    double customMargin() const { return customMargin_; }
    void setCustomMargin(double value);
    double customPeakLimit() const { return customPeakLimit_; }
    void setCustomPeakLimit(double value);

    // The profile these settings describe.
    ExposureProfile profile() const;

    static double clampedMinutes(double value);
    static double clampedMargin(double value);

signals:
    void profileKindChanged();
    void customMinutesChanged();
    void customLimitChanged();
    void customMarginChanged();
    void customPeakLimitChanged();

private:
    QString profileName() const;
    // An unknown name is ignored.
    void setProfileName(const QString& name);

    ExposureProfileKind profileKind_;
    double customMinutes_;
    double customLimit_;
    double customMargin_;
    double customPeakLimit_;
};

} // namespace ostrel
