#include "recording/RecordingLog.h"

Q_LOGGING_CATEGORY(ostrelRecording, "ostrel.recording")
