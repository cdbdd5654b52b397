#pragma once

// Gives DisplaySettings its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "model/DisplaySettings.h"

namespace ostrel {

struct DisplaySettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::DisplaySettings)
    QML_NAMED_ELEMENT(DisplaySettings)
    QML_UNCREATABLE("Settings groups belong to the station's settings.")
};

} // namespace ostrel
