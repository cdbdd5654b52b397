#pragma once

// The log category of the recorder: what went wrong with a recording, for the engineer who
// looks afterwards.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(ostrelRecording)
