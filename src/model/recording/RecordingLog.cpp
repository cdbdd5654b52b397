#include "model/recording/RecordingLog.h"

Q_LOGGING_CATEGORY(ostrelRecording, "ostrel.recording")
