#include "ostrel-analyze/RowFormatter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace ostrel::analyze {

namespace {

constexpr int timeDecimals = 3;
constexpr int levelDecimals = 2;

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

std::string formatFixed(double value, int decimals)
{
    // A value that rounds to zero prints as zero, not with a sign that only confuses a diff.
    const double scale = std::pow(10.0, decimals);
    if (std::round(std::abs(value) * scale) == 0.0) value = 0.0;
    // Room for the longest fixed double, about 310 digits.
    std::array<char, 512> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::fixed, decimals);
    if (error != std::errc()) return "nan";
    return std::string(buffer.data(), end);
}

std::string formatHeader(OutputFormat format)
{
    return format == OutputFormat::csv ? "time,level,leq,peak,max,rawDBFS,clipped\n" : "";
}

std::string formatRow(OutputFormat format, double time, const MeasurementInterval& interval)
{
    const std::string timeText = formatFixed(time, timeDecimals);
    if (format == OutputFormat::csv) {
        std::string row = timeText;
        for (double value : {interval.level, interval.leq(), interval.peakLevel(), interval.maxLevel,
                             interval.rawLevelDBFS()}) {
            row += ',';
            row += level(value);
        }
        row += ',';
        row += boolean(interval.clipped);
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
    row += "}\n";
    return row;
}

std::string formatSummary(OutputFormat format, const LevelStatistics& statistics)
{
    const std::string duration = formatFixed(statistics.duration, timeDecimals);
    if (format == OutputFormat::csv) {
        return "# summary leq=" + optionalLevel(statistics.leq(), "none")
               + " peak=" + optionalLevel(statistics.peak(), "none")
               + " max=" + optionalLevel(statistics.maxLevel, "none") + " duration=" + duration
               + "\n";
    }
    return "{\"summary\":{\"leq\":" + optionalLevel(statistics.leq(), "null")
           + ",\"peak\":" + optionalLevel(statistics.peak(), "null")
           + ",\"max\":" + optionalLevel(statistics.maxLevel, "null") + ",\"duration\":" + duration
           + "}}\n";
}

} // namespace ostrel::analyze
