#include "ostrel-analyze/ExposureColumns.h"

#include <optional>
#include <string_view>

#include "ostrel-analyze/FixedDecimals.h"

namespace ostrel::analyze {

namespace {

constexpr int minuteDecimals = 1;
constexpr int percentDecimals = 1;

std::string value(const std::optional<double>& number, int decimals, std::string_view absent)
{
    return number ? formatFixed(*number, decimals) : std::string(absent);
}

} // namespace

std::string exposureCsvHeader()
{
    return ",laeqWindow,lcpeak,room";
}

std::string exposureCells(OutputFormat format, const ExposureReading& reading)
{
    if (format == OutputFormat::csv) {
        return "," + value(reading.laeqWindow, levelDecimals, "") + ","
            + value(reading.lcpeak, levelDecimals, "") + ","
            + value(reading.room, levelDecimals, "");
    }
    return ",\"laeqWindow\":" + value(reading.laeqWindow, levelDecimals, "null")
        + ",\"lcpeak\":" + value(reading.lcpeak, levelDecimals, "null")
        + ",\"room\":" + value(reading.room, levelDecimals, "null");
}

std::string exposureSummary(OutputFormat format, const ExposureMeter& meter)
{
    const ExposureReading& reading = meter.reading();
    const bool any = meter.laeqWindowMax().has_value();
    const std::string absent = format == OutputFormat::csv ? "none" : "null";
    const std::string fields[][2] = {
        {"laeqWindowMax", value(meter.laeqWindowMax(), levelDecimals, absent)},
        {"laeqWindowMaxAt", any ? formatFixed(meter.laeqWindowMaxAt(), timeDecimals) : absent},
        {"minutesOver", formatFixed(meter.secondsOverLimit() / 60.0, minuteDecimals)},
        {"lcpeakMax", value(reading.lcpeakShow, levelDecimals, absent)},
        {"laeqShow", value(reading.laeqShow, levelDecimals, absent)},
        {"dosePercent", formatFixed(reading.dosePercent, percentDecimals)},
    };
    std::string text;
    for (const auto& [name, number] : fields) {
        if (format == OutputFormat::csv)
            text += " " + name + "=" + number;
        else
            text += ",\"" + name + "\":" + number;
    }
    return text;
}

} // namespace ostrel::analyze
