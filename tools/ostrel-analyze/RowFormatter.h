#pragma once

// The text ostrel-analyze writes: fixed decimals with a "." whatever the locale, LF line ends,
// so that the output of two runs or two machines can be compared byte for byte.
#include <optional>
#include <string>

#include "exposure/ExposureMeter.h"
#include "measurement/LevelStatistics.h"
#include "measurement/MeasurementInterval.h"
#include "ostrel-analyze/AnalyzeOptions.h"
#include "ostrel-analyze/FixedDecimals.h"

namespace ostrel::analyze {

// What --spectrum adds to a row besides the interval's own spectrum.
struct SpectrumExtras {
    std::optional<double> feedback; // Hz of the feedback warning in force
    bool operator==(const SpectrumExtras&) const = default;
};

// The CSV header line; nothing for JSONL, whose rows name their fields.
// With `exposure`, the exposure columns come last.
std::string formatHeader(OutputFormat format, bool spectrum = false, bool exposure = false);
// One line. `time` is the seconds of audio at the interval's end. With `spectrum`, the row goes
// on with the spectrum columns.
std::string formatRow(OutputFormat format, double time, const MeasurementInterval& interval,
    const std::optional<SpectrumExtras>& spectrum = std::nullopt,
    const ExposureReading* exposure = nullptr);
// CSV: one comment line, "# summary leq=.. peak=.. max=.. duration=..".
// JSONL: {"summary":{"leq":..,"peak":..,"max":..,"duration":..}}.
// Levels of an empty file are "none" in CSV and null in JSONL.
// With `exposure`, its six values follow.
std::string formatSummary(OutputFormat format, const LevelStatistics& statistics,
    const ExposureMeter* exposure = nullptr);

} // namespace ostrel::analyze
