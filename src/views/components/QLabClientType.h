#pragma once

// Gives QLabClient its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "qlab/client/QLabClient.h"

namespace ostrel {

struct QLabClientForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::QLabClient)
    QML_NAMED_ELEMENT(QLabClient)
    QML_UNCREATABLE("The station's QLab client is made by its QLab link.")
};

} // namespace ostrel
