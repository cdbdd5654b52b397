#pragma once

// Gives MeasurementSettings its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "measurement/MeasurementSettings.h"

namespace ostrel {

struct MeasurementSettingsForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::MeasurementSettings)
    QML_NAMED_ELEMENT(MeasurementSettings)
    QML_UNCREATABLE("Settings groups belong to the station's settings.")
};

} // namespace ostrel
