#pragma once

// Gives the mic monitor and the mic switches their QML names, so that views declare them as
// typed inputs.
#include <QtQml/qqml.h>

#include "mics/MicMonitoringSettings.h"
#include "mics/link/MicMonitor.h"

namespace ostrel {

struct MicMonitorForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::MicMonitor)
    QML_NAMED_ELEMENT(MicMonitor)
    QML_UNCREATABLE("The station's mic monitor is made by the central model.")
};

struct MicMonitoringSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::MicMonitoringSettings)
    QML_NAMED_ELEMENT(MicMonitoringSettings)
    QML_UNCREATABLE("The mic switches are a group of the station's settings.")
};

} // namespace ostrel
