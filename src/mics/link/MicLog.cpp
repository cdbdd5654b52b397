#include "mics/link/MicLog.h"

Q_LOGGING_CATEGORY(ostrelMics, "ostrel.mics", QtWarningMsg)
