#pragma once

// The two switches of radio mic monitoring. The receiver list itself belongs to the monitor.
#include "settings/SettingsGroup.h"

namespace ostrel {

class MicMonitoringSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(bool monitoringEnabled READ monitoringEnabled WRITE setMonitoringEnabled NOTIFY
            monitoringEnabledChanged)
    Q_PROPERTY(bool lowBatteryWarnings READ lowBatteryWarnings WRITE setLowBatteryWarnings NOTIFY
            lowBatteryWarningsChanged)

public:
    static const Setting<bool> monitoringEnabledKey;
    static const Setting<bool> lowBatteryWarningsKey;

    explicit MicMonitoringSettings(SettingsStore& store, QObject* parent = nullptr);

    bool monitoringEnabled() const { return monitoringEnabled_; }
    void setMonitoringEnabled(bool value);
    bool lowBatteryWarnings() const { return lowBatteryWarnings_; }
    void setLowBatteryWarnings(bool value);

signals:
    void monitoringEnabledChanged();
    void lowBatteryWarningsChanged();

private:
    bool monitoringEnabled_;
    bool lowBatteryWarnings_;
};

} // namespace ostrel
