#pragma once

// Gives the Dante settings group its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "dante/DanteSettings.h"

namespace ostrel {

struct DanteSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::DanteSettings)
    QML_NAMED_ELEMENT(DanteSettings)
    QML_UNCREATABLE("The Dante settings belong to the station's settings.")
};

} // namespace ostrel
