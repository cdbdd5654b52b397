#pragma once

// Gives the input settings group its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "measurement/InputSettings.h"

namespace ostrel {

struct InputSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::InputSettings)
    QML_NAMED_ELEMENT(InputSettings)
    QML_UNCREATABLE("Settings groups belong to the station's settings.")
};

} // namespace ostrel
