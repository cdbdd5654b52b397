#pragma once

// The log category of the receiver links: dropped input and refused certificates.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(ostrelMics)
