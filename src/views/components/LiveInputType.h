#pragma once

// Gives LiveInput its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "station/LiveInput.h"

namespace ostrel {

struct LiveInputForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::LiveInput)
    QML_NAMED_ELEMENT(LiveInput)
    QML_UNCREATABLE("The station's live input is made by the station.")
};

} // namespace ostrel
