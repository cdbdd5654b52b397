#include "ostrel-analyze/SpectrumColumns.h"

#include <span>
#include <string_view>
#include <vector>

#include "measurement/SpectrumBand.h"
#include "ostrel-analyze/FixedDecimals.h"

namespace ostrel::analyze {

namespace {

std::string level(double value)
{
    return formatFixed(value, levelDecimals);
}

std::string frequency(double value)
{
    return formatFixed(value, frequencyDecimals);
}

std::string optionalFrequency(const std::optional<double>& value, std::string_view absent)
{
    return value ? frequency(*value) : std::string(absent);
}

void appendHeaders(
    std::string& header, std::string_view prefix, const std::vector<SpectrumBand>& bands)
{
    for (const auto& band : bands) {
        header += ',';
        header += prefix;
        header += frequency(band.center);
    }
}

// CSV cells when `levels` is given, else as many empty cells.
void appendCsvLevels(std::string& row, std::span<const double> levels, std::size_t count)
{
    for (std::size_t index = 0; index < count; ++index) {
        row += ',';
        if (!levels.empty()) row += level(levels[index]);
    }
}

std::string jsonArray(std::span<const double> levels)
{
    std::string array = "[";
    for (std::size_t index = 0; index < levels.size(); ++index) {
        if (index > 0) array += ',';
        array += level(levels[index]);
    }
    array += ']';
    return array;
}

std::string jsonPeak(const SpectralPeak& peak)
{
    return "{\"frequency\":" + frequency(peak.frequency) + ",\"level\":" + level(peak.level)
        + ",\"prominence\":" + level(peak.prominence)
        + ",\"harmonicLevel\":" + level(peak.harmonicLevel) + "}";
}

} // namespace

std::string spectrumCsvHeader()
{
    std::string header;
    appendHeaders(header, "third_", SpectrumBand::thirdOctave());
    appendHeaders(header, "fine_", SpectrumBand::fine());
    header += ",dominant,peakFrequency,peakLevel,peakProminence,peakHarmonic,feedback";
    return header;
}

std::string spectrumCsvCells(
    const std::optional<Spectrum>& spectrum, std::optional<double> feedback)
{
    std::string row;
    appendCsvLevels(row,
        spectrum ? std::span<const double>(spectrum->bandLevels) : std::span<const double>(),
        SpectrumBand::thirdOctaveCount);
    appendCsvLevels(row,
        spectrum ? std::span<const double>(spectrum->fineBandLevels) : std::span<const double>(),
        SpectrumBand::fineCount);
    row += ',';
    if (spectrum) row += optionalFrequency(spectrum->dominantFrequency, "");
    const SpectralPeak* peak = spectrum && spectrum->peak ? &*spectrum->peak : nullptr;
    if (peak) {
        row += ',' + frequency(peak->frequency) + ',' + level(peak->level) + ','
            + level(peak->prominence) + ',' + level(peak->harmonicLevel);
    } else {
        row += ",,,,";
    }
    row += ',' + optionalFrequency(feedback, "");
    return row;
}

std::string spectrumJsonFields(
    const std::optional<Spectrum>& spectrum, std::optional<double> feedback)
{
    // "peak" already holds the interval's peak level, so the spectral peak gets a name of its own.
    std::string fields = ",\"bands\":";
    fields += spectrum ? jsonArray(spectrum->bandLevels) : "null";
    fields += ",\"fine\":";
    fields += spectrum ? jsonArray(spectrum->fineBandLevels) : "null";
    fields += ",\"dominant\":";
    fields += spectrum ? optionalFrequency(spectrum->dominantFrequency, "null") : "null";
    fields += ",\"spectralPeak\":";
    fields += spectrum && spectrum->peak ? jsonPeak(*spectrum->peak) : "null";
    fields += ",\"feedback\":" + optionalFrequency(feedback, "null");
    return fields;
}

} // namespace ostrel::analyze
