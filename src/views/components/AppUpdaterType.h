#pragma once

// Gives AppUpdater its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "station/AppUpdater.h"

namespace ostrel {

struct AppUpdaterForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::AppUpdater)
    QML_NAMED_ELEMENT(AppUpdater)
    QML_UNCREATABLE("The station's updater is made by its AppModel.")
};

} // namespace ostrel
