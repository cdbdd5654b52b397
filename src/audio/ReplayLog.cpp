#include "audio/ReplayLog.h"

Q_LOGGING_CATEGORY(ostrelReplay, "ostrel.replay")
