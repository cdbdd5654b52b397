#pragma once

// Gives the session store its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "sessions/SessionStore.h"

namespace ostrel {

struct SessionStoreForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::SessionStore)
    QML_NAMED_ELEMENT(SessionStore)
    QML_UNCREATABLE("The session store belongs to the station.")
};

} // namespace ostrel
