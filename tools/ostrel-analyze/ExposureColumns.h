#pragma once

// What --exposure adds: three columns to every row and six values to the summary, in the fixed
// decimals of the rest of the output.
#include <string>

#include "exposure/ExposureMeter.h"
#include "ostrel-analyze/AnalyzeOptions.h"

namespace ostrel::analyze {

std::string exposureCsvHeader();
// ",laeqWindow,lcpeak,room" for CSV, ",\"laeqWindow\":..,..." for JSONL.
std::string exposureCells(OutputFormat format, const ExposureReading& reading);
// " laeqWindowMax=.. laeqWindowMaxAt=.. minutesOver=.. lcpeakMax=.. laeqShow=.. dosePercent=.."
// for the CSV comment line, or ",\"laeqWindowMax\":..,..." inside the JSONL summary object.
std::string exposureSummary(OutputFormat format, const ExposureMeter& meter);

} // namespace ostrel::analyze
