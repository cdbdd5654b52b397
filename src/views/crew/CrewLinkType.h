#pragma once

// Gives the crew link and the crew settings their QML names, so that views declare them as
// typed inputs.
#include <QtQml/qqml.h>

#include "crew/CrewLink.h"
#include "network/CrewSettings.h"

namespace ostrel {

struct CrewLinkForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::CrewLink)
    QML_NAMED_ELEMENT(CrewLink)
    QML_UNCREATABLE("The station's crew link is made by the central model.")
};

// "CrewSettings" is the settings page's name in QML.
struct CrewSettingsGroupForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::CrewSettings)
    QML_NAMED_ELEMENT(CrewSettingsGroup)
    QML_UNCREATABLE("The crew settings are a group of the station's settings.")
};

} // namespace ostrel
