#pragma once

// The text ostrel-analyze writes: fixed decimals with a "." whatever the locale, LF line ends,
// so that the output of two runs or two machines can be compared byte for byte.
#include <string>

#include "measurement/LevelStatistics.h"
#include "measurement/MeasurementInterval.h"
#include "ostrel-analyze/AnalyzeOptions.h"

namespace ostrel::analyze {

// `decimals` digits after the point; never "-0.00".
std::string formatFixed(double value, int decimals);

// The CSV header line; nothing for JSONL, whose rows name their fields.
std::string formatHeader(OutputFormat format);
// One line. `time` is the seconds of audio at the interval's end.
std::string formatRow(OutputFormat format, double time, const MeasurementInterval& interval);
// CSV: one comment line, "# summary leq=.. peak=.. max=.. duration=..".
// JSONL: {"summary":{"leq":..,"peak":..,"max":..,"duration":..}}.
// Levels of an empty file are "none" in CSV and null in JSONL.
std::string formatSummary(OutputFormat format, const LevelStatistics& statistics);

} // namespace ostrel::analyze
