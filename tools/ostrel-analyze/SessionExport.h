#pragma once

// Writes a recorded show's level log or cue log as the station's CSV, for a spreadsheet.
#include <ostream>

#include "ostrel-analyze/AnalyzeOptions.h"

namespace ostrel::analyze {

// 0, or 2 with one line on `errors` ("ostrel-analyze: " first) when the session can't be read or
// the CSV can't be written. An existing CSV file is replaced whole or not at all.
int exportSession(const ExportRequest& request, std::ostream& errors);

} // namespace ostrel::analyze
