#pragma once

// Gives the QLab settings group its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "qlab/QLabSettings.h"

namespace ostrel {

struct QLabSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::QLabSettings)
    QML_NAMED_ELEMENT(QLabSettings)
    QML_UNCREATABLE("Settings groups belong to the station's settings.")
};

} // namespace ostrel
