#pragma once

// The station's radio mic monitoring: owns the monitor and the keyring of receiver passwords, and
// takes the two mic switches to the monitor. Main thread only.
#include <QObject>

#include "mics/MicMonitoringSettings.h"
#include "mics/link/Keychain.h"
#include "mics/link/MicMonitor.h"

namespace ostrel {

class RadioMics : public QObject {
    Q_OBJECT

public:
    // Without a store (an inert station) the receiver list is neither loaded nor saved.
    RadioMics(MicMonitoringSettings& settings, SettingsStore* store, MicMonitor::Timings timings,
        MicMonitor::Clock clock, QObject* parent = nullptr);

    // Applies the switches and follows them from then on.
    void start();
    // The battery warning first, so that enabling starts with the right roster.
    void applySettings();

    // A crew secondary's own inputs stay off whatever the settings say; the settings are read
    // again when it stops being one.
    void setSuspended(bool suspended) { isSuspended_ = suspended; }
    bool isSuspended() const { return isSuspended_; }
    MicMonitor& monitor() { return monitor_; }
    const MicMonitor& monitor() const { return monitor_; }
    // How often the switches have been applied, for tests.
    int applyCount() const { return applies_; }

private:
    MicMonitoringSettings& settings_;
    Keychain keychain_;
    MicMonitor monitor_;
    bool isFollowing_ = false;
    bool isSuspended_ = false;
    int applies_ = 0;
};

} // namespace ostrel
