#include "audio/AudioLog.h"

Q_LOGGING_CATEGORY(ostrelAudio, "ostrel.audio")
