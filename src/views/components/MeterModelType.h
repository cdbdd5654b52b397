#pragma once

// Gives the meter model its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "model/MeterModel.h"

namespace ostrel {

struct MeterModelForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::MeterModel)
    QML_NAMED_ELEMENT(MeterModel)
    QML_UNCREATABLE("The meter belongs to the station or to a replay.")
};

} // namespace ostrel
