#pragma once

// The columns --spectrum adds to a row: the interval's spectrum band by band, its peak, and the
// frequency of the feedback warning in force. CSV columns are headed by the bands' own centres so
// that a spreadsheet can plot them without a table of frequencies.
#include <optional>
#include <string>

#include "measurement/Spectrum.h"

namespace ostrel::analyze {

// Each starts with a comma, to follow the level columns or fields.
std::string spectrumCsvHeader();
std::string spectrumCsvCells(
    const std::optional<Spectrum>& spectrum, std::optional<double> feedback);
std::string spectrumJsonFields(
    const std::optional<Spectrum>& spectrum, std::optional<double> feedback);

} // namespace ostrel::analyze
