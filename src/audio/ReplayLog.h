#pragma once

// The log category of replay: what could not be opened or played, for the engineer who looks
// afterwards.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(ostrelReplay)
