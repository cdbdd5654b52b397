#pragma once

// Gives the central model its QML name, so that every view declares it as a typed input.
#include <QtQml/qqml.h>

#include "station/AppModel.h"

namespace ostrel {

struct AppModelForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::AppModel)
    QML_NAMED_ELEMENT(AppModel)
    QML_UNCREATABLE("The station's one AppModel is made at start-up and handed to the window.")
};

} // namespace ostrel
