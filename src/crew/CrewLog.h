#pragma once

// The log category of the crew link: failed connections and listeners, unreadable messages.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(ostrelCrew)
