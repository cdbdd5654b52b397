#pragma once

// Gives AppSettings its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "station/AppSettings.h"

namespace ostrel {

struct AppSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::AppSettings)
    QML_NAMED_ELEMENT(AppSettings)
    QML_UNCREATABLE("The station's settings are read once at start-up.")
};

} // namespace ostrel
