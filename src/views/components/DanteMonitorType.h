#pragma once

// Gives DanteMonitor its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "dante/monitor/DanteMonitor.h"

namespace ostrel {

struct DanteMonitorForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::DanteMonitor)
    QML_NAMED_ELEMENT(DanteMonitor)
    QML_UNCREATABLE("The station's Dante monitor is made by its Dante watch.")
};

} // namespace ostrel
