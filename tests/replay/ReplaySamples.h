#pragma once

// Recorded shows built in memory for the player's tests: frames every eighth of a second
// (times exact in binary), the wall clock half a second ahead of the audio, and cues.
#include <chrono>
#include <cstdint>
#include <functional>

#include <QString>
#include <QUuid>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/SPLMath.h"
#include "sessions/CueRecord.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "sessions/ShowSession.h"

namespace ostrel::replay_test {

inline const Date showStart = Date {} + std::chrono::milliseconds(1'773'516'605'000);
constexpr double framePeriod = 0.125;
constexpr double wallLead = 0.5;

inline double audioTimeOf(std::int64_t index)
{
    return static_cast<double>(index + 1) * framePeriod;
}

inline double wallTimeOf(std::int64_t index)
{
    return audioTimeOf(index) + wallLead;
}

// An eighth of a second at 48 kHz at `level`, with a flat fine spectrum at the same level.
inline MeasurementInterval interval(double level)
{
    MeasurementInterval result;
    result.sampleCount = 6000;
    result.sampleRate = 48000.0;
    result.energy = SPLMath::power(level) * 6000.0;
    result.peakPower = SPLMath::power(level + 3.0);
    result.maxLevel = level + 1.0;
    result.level = level;
    result.rawEnergy = result.energy * 1e-10;
    auto& spectrum = result.spectrum.emplace();
    spectrum.bandLevels.fill(level - 10.0);
    spectrum.fineBandLevels.fill(level - 20.0);
    return result;
}

// Frame `index` at the level `levelOf(index)`, 70 dB plus a tenth of the index by default.
inline RecordingFrames frames(
    std::int64_t count,
    const std::function<double(std::int64_t)>& levelOf
    = [](std::int64_t index) { return 70.0 + static_cast<double>(index % 200) / 10.0; })
{
    QByteArray bytes = RecordingFormat::header();
    bytes.reserve(bytes.size() + count * static_cast<qsizetype>(RecordingFormat::frameSize));
    for (std::int64_t index = 0; index < count; ++index) {
        bytes += RecordingFormat::encode(
            RecordedFrame {audioTimeOf(index), wallTimeOf(index), interval(levelOf(index))});
    }
    return *RecordingFrames::fromBytes(bytes);
}

// A cue that started `wallSeconds` after the show's start and ran `length` seconds.
inline CueRecord cue(const QString& number, double wallSeconds, double length = 30.0)
{
    CueRecord result;
    result.id = QUuid::createUuid();
    result.cueID = number + QStringLiteral("-id");
    result.number = number;
    result.name = QStringLiteral("Cue ") + number;
    result.type = QStringLiteral("Audio");
    result.start = addingSeconds(showStart, wallSeconds);
    result.end = addingSeconds(result.start, length);
    return result;
}

inline ShowSession session(std::vector<CueRecord> cues = {})
{
    ShowSession result(QStringLiteral("Evening show"), showStart, QStringLiteral("LAeq Fast"),
        QStringLiteral("2026-03-14 19.30"));
    result.cues = std::move(cues);
    return result;
}

} // namespace ostrel::replay_test
