#pragma once

// Gives AudioInput its QML name, so that views declare it as a typed input.
#include <QtQml/qqml.h>

#include "audio/AudioInput.h"

namespace ostrel {

struct AudioInputForeign {
    Q_GADGET
    QML_FOREIGN(ostrel::AudioInput)
    QML_NAMED_ELEMENT(AudioInput)
    QML_UNCREATABLE("The station's live input is made by the station.")
};

} // namespace ostrel
