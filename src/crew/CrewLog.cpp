#include "crew/CrewLog.h"

Q_LOGGING_CATEGORY(ostrelCrew, "ostrel.crew")
