#pragma once

// Whether the station watches for Dante devices, and whether a dropout flashes the screen.
#include "settings/SettingsGroup.h"

namespace ostrel {

class DanteSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(bool monitoringEnabled READ monitoringEnabled WRITE setMonitoringEnabled NOTIFY
            monitoringEnabledChanged)
    Q_PROPERTY(bool dropoutFlash READ dropoutFlash WRITE setDropoutFlash NOTIFY dropoutFlashChanged)

public:
    static const Setting<bool> monitoringEnabledKey;
    static const Setting<bool> dropoutFlashKey;

    explicit DanteSettings(SettingsStore& store, QObject* parent = nullptr);

    bool monitoringEnabled() const { return monitoringEnabled_; }
    void setMonitoringEnabled(bool value);
    bool dropoutFlash() const { return dropoutFlash_; }
    void setDropoutFlash(bool value);

signals:
    void monitoringEnabledChanged();
    void dropoutFlashChanged();

private:
    bool monitoringEnabled_;
    bool dropoutFlash_;
};

} // namespace ostrel
