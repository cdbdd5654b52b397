#pragma once

// What the measurement reports about its input: under the input's category, since a bad sample
// is the input's fault.
#include <QLoggingCategory>
#include <cstdint>

Q_DECLARE_LOGGING_CATEGORY(ostrelMeasurement)

namespace ostrel::MeasurementLog {

// Once per interval that held any, so a broken driver cannot flood the log.
void nonFiniteSamples(std::int64_t count);

} // namespace ostrel::MeasurementLog
