#include "measurement/MeasurementLog.h"

Q_LOGGING_CATEGORY(ostrelMeasurement, "ostrel.audio")

namespace ostrel::MeasurementLog {

void nonFiniteSamples(std::int64_t count)
{
    qCWarning(ostrelMeasurement,
        "Samples that were not finite, measured as silence: %lld in one interval",
        static_cast<long long>(count));
}

} // namespace ostrel::MeasurementLog
