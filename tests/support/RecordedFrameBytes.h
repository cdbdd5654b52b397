#pragma once

// The bytes of a measurements file: the header and one frame with a spectrum per pair of times.
#include <vector>

#include <QByteArray>

#include "sessions/RecordingFormat.h"
#include "support/SteadyInterval.h"

namespace ostrel::testsupport {

struct FrameTimes {
    double audio;
    double wall;
};

inline QByteArray recordedFrameBytes(const std::vector<FrameTimes>& times)
{
    QByteArray bytes = RecordingFormat::header();
    for (const FrameTimes& time : times) {
        MeasurementInterval withSpectrum = steadyInterval(80.0);
        withSpectrum.spectrum.emplace().bandLevels.fill(55.5);
        bytes += RecordingFormat::encode(RecordedFrame {time.audio, time.wall, withSpectrum});
    }
    return bytes;
}

// Four frames a tenth of a second apart, the wall clock a little behind.
inline const std::vector<FrameTimes> steadyFrameTimes {
    {0.1, 0.12}, {0.2, 0.21}, {0.3, 0.33}, {0.4, 0.41}};

} // namespace ostrel::testsupport
