#pragma once

// Dates, cues and intervals the session tests build on.
#include <chrono>
#include <cstdint>

#include <QString>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/SPLMath.h"
#include "qlab/QLabCue.h"

namespace ostrel::sessions_test {

// 2026-03-14T19:30:05.250Z
inline const Date showStart = Date {} + std::chrono::milliseconds(1'773'516'605'250);

inline Date at(double seconds)
{
    return addingSeconds(showStart, seconds);
}

inline QLabCue cue(const QString& id, const QString& number, const QString& name,
    const QString& type = QStringLiteral("Audio"))
{
    QLabCue result;
    result.id = id;
    result.number = number;
    result.name = name;
    result.type = type;
    result.startedAt = at(-100.0); // the client's clock, which the tracker must not use
    return result;
}

// A tenth of a second at 48 kHz, at a steady level.
inline MeasurementInterval interval(double level, std::int64_t sampleCount = 4800)
{
    MeasurementInterval result;
    result.sampleCount = sampleCount;
    result.sampleRate = 48000.0;
    result.energy = SPLMath::power(level) * static_cast<double>(sampleCount);
    result.peakPower = SPLMath::power(level + 3.0);
    result.maxLevel = level + 1.0;
    result.level = level;
    result.rawEnergy = result.energy * 1e-10;
    return result;
}

} // namespace ostrel::sessions_test
