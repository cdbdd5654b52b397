#include "ostrel-analyze/RowFormatter.h"

#include <optional>
#include <string_view>

#include "ostrel-analyze/ExposureColumns.h"
#include "ostrel-analyze/SpectrumColumns.h"

namespace ostrel::analyze {

namespace {

std::string level(double value)
{
    return formatFixed(value, levelDecimals);
}

std::string optionalLevel(const std::optional<double>& value, std::string_view absent)
{
    return value ? level(*value) : std::string(absent);
}

std::string_view boolean(bool value)
{
    return value ? "true" : "false";
}

} // namespace

std::string formatHeader(OutputFormat format, bool spectrum, bool exposure)
{
    if (format != OutputFormat::csv) return "";
    std::string header = "time,level,leq,peak,max,rawDBFS,clipped";
    if (spectrum) header += spectrumCsvHeader();
    if (exposure) header += exposureCsvHeader();
    header += '\n';
    return header;
}

std::string formatRow(OutputFormat format, double time, const MeasurementInterval& interval,
    const std::optional<SpectrumExtras>& spectrum, const ExposureReading* exposure)
{
    const std::string timeText = formatFixed(time, timeDecimals);
    if (format == OutputFormat::csv) {
        std::string row = timeText;
        for (double value : {interval.level, interval.leq(), interval.peakLevel(),
                 interval.maxLevel, interval.rawLevelDBFS()}) {
            row += ',';
            row += level(value);
        }
        row += ',';
        row += boolean(interval.clipped);
        if (spectrum) row += spectrumCsvCells(interval.spectrum, spectrum->feedback);
        if (exposure) row += exposureCells(format, *exposure);
        row += '\n';
        return row;
    }
    std::string row = "{\"time\":" + timeText;
    row += ",\"level\":" + level(interval.level);
    row += ",\"leq\":" + level(interval.leq());
    row += ",\"peak\":" + level(interval.peakLevel());
    row += ",\"max\":" + level(interval.maxLevel);
    row += ",\"rawDBFS\":" + level(interval.rawLevelDBFS());
    row += ",\"clipped\":";
    row += boolean(interval.clipped);
    if (spectrum) row += spectrumJsonFields(interval.spectrum, spectrum->feedback);
    if (exposure) row += exposureCells(format, *exposure);
    row += "}\n";
    return row;
}

std::string formatSummary(
    OutputFormat format, const LevelStatistics& statistics, const ExposureMeter* exposure)
{
    const std::string extra = exposure ? exposureSummary(format, *exposure) : std::string();
    const std::string duration = formatFixed(statistics.duration, timeDecimals);
    if (format == OutputFormat::csv) {
        return "# summary leq=" + optionalLevel(statistics.leq(), "none")
            + " peak=" + optionalLevel(statistics.peak(), "none") + " max="
            + optionalLevel(statistics.maxLevel, "none") + " duration=" + duration + extra + "\n";
    }
    return "{\"summary\":{\"leq\":" + optionalLevel(statistics.leq(), "null")
        + ",\"peak\":" + optionalLevel(statistics.peak(), "null") + ",\"max\":"
        + optionalLevel(statistics.maxLevel, "null") + ",\"duration\":" + duration + extra + "}}\n";
}

} // namespace ostrel::analyze
