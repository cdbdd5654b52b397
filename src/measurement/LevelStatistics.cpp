#include "measurement/LevelStatistics.h"

#include <algorithm>
#include <cmath>

#include "measurement/SPLMath.h"

namespace ostrel {

std::optional<double> LevelStatistics::leq() const noexcept
{
    if (sampleCount < 1) return std::nullopt;
    return SPLMath::decibels(energy / static_cast<double>(sampleCount));
}

std::optional<double> LevelStatistics::peak() const noexcept
{
    if (sampleCount < 1) return std::nullopt;
    return SPLMath::decibels(peakPower);
}

void LevelStatistics::add(const MeasurementInterval& interval) noexcept
{
    if (interval.sampleCount < 1) return;
    energy += interval.energy;
    sampleCount += interval.sampleCount;
    duration += interval.duration();
    peakPower = std::max(peakPower, interval.peakPower);
    maxLevel = maxLevel ? std::max(*maxLevel, interval.maxLevel) : interval.maxLevel;
}

QJsonObject LevelStatistics::toJson() const
{
    QJsonObject object {{"energy", energy}, {"sampleCount", static_cast<qint64>(sampleCount)},
        {"duration", duration}, {"peakPower", peakPower}};
    if (maxLevel) object.insert("maxLevel", *maxLevel);
    return object;
}

std::optional<LevelStatistics> LevelStatistics::fromJson(const QJsonObject& object)
{
    const auto energy = object.value("energy");
    const auto count = object.value("sampleCount");
    const auto duration = object.value("duration");
    const auto peakPower = object.value("peakPower");
    if (!energy.isDouble() || !count.isDouble() || !duration.isDouble() || !peakPower.isDouble())
        return std::nullopt;
    // A count must be a whole number; a fraction is a corrupt file, not a rounding.
    const double countValue = count.toDouble();
    if (countValue != std::floor(countValue)) return std::nullopt;

    LevelStatistics statistics;
    statistics.energy = energy.toDouble();
    statistics.sampleCount = static_cast<std::int64_t>(countValue);
    statistics.duration = duration.toDouble();
    statistics.peakPower = peakPower.toDouble();
    // Missing or null means absent; any other type is as corrupt as a missing energy.
    const auto maxLevel = object.value("maxLevel");
    if (maxLevel.isDouble())
        statistics.maxLevel = maxLevel.toDouble();
    else if (!maxLevel.isUndefined() && !maxLevel.isNull())
        return std::nullopt;
    return statistics;
}

} // namespace ostrel
