#pragma once

// Running Leq, Peak and Max added up from intervals, for a screen, a cue or a show. Sums
// calibrated energy, so an interval keeps the value it had when it was measured.
#include <cstdint>
#include <optional>

#include <QJsonObject>

#include "measurement/MeasurementInterval.h"

namespace ostrel {

struct LevelStatistics {
    double energy = 0.0;
    std::int64_t sampleCount = 0;
    double duration = 0.0;
    double peakPower = 0.0;
    std::optional<double> maxLevel;

    bool isEmpty() const noexcept { return sampleCount == 0; }
    std::optional<double> leq() const noexcept;
    std::optional<double> peak() const noexcept;
    void add(const MeasurementInterval& interval) noexcept;

    // Keys energy, sampleCount, duration, peakPower and, when present, maxLevel.
    QJsonObject toJson() const;
    // Absent when energy, sampleCount, duration or peakPower is missing or not a number.
    static std::optional<LevelStatistics> fromJson(const QJsonObject& object);

    bool operator==(const LevelStatistics&) const = default;
};

} // namespace ostrel
