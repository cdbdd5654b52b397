#pragma once

// The station's watch on the Dante network: owns the monitor, starts and stops it as the Dante
// settings say, and builds the sample roster of a demo. Main thread only.
#include <QObject>

#include "common/Date.h"
#include "dante/DanteRoster.h"
#include "dante/DanteSettings.h"
#include "dante/monitor/DanteMonitor.h"

namespace ostrel {

class DanteWatch : public QObject {
    Q_OBJECT

public:
    explicit DanteWatch(DanteSettings& settings, QObject* parent = nullptr);

    // Applies the settings and follows them from then on.
    void start();
    void applySettings();

    // A crew secondary's own inputs stay off whatever the settings say; the settings are read
    // again when it stops being one.
    void setSuspended(bool suspended) { isSuspended_ = suspended; }
    bool isSuspended() const { return isSuspended_; }
    DanteMonitor& monitor() { return monitor_; }
    const DanteMonitor& monitor() const { return monitor_; }

    // Six devices seen ten minutes before `now`, with addresses, and with `withDropout`
    // "Stage-Box-2" lost 42 seconds before it.
    static DanteRoster sampleRoster(bool withDropout, Date now);

private:
    DanteSettings& settings_;
    DanteMonitor monitor_;
    bool isFollowing_ = false;
    bool isSuspended_ = false;
};

} // namespace ostrel
