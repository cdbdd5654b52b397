#pragma once

// Sound and intervals that the recorder tests and their helper process feed a recorder with,
// and the decoding of what it wrote.
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <QString>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "recording/SessionRecorder.h"

namespace ostrel::recording_test {

// A fixed start, so that wall times are known exactly.
Date sessionStart();

// An interval as the pipeline would close it, with a spectrum whose bands carry `level`.
MeasurementInterval interval(std::int64_t sampleCount, double sampleRate, double level);

// Feeds `signal` in blocks, closing an interval, as the pipeline does, after the block with which
// a tenth of a second has gathered (only every `intervalEvery` tenths, to thin the frames out).
// Dates advance with the audio. Returns the number of intervals sent.
struct Feed {
    double sampleRate = 48000.0;
    int intervalEvery = 1;
    std::int64_t startSample = 0; // where `signal` starts in the session's audio
    std::size_t blockSize = 0; // 0: sizes cycling through awkward values, as a stress
};
int feed(SessionRecorder& recorder, std::span<const float> signal, const Feed& options);

std::vector<float> silence(std::size_t count);
std::vector<float> sine(std::size_t count, double sampleRate, double frequency, float amplitude);
// Deterministic white noise plus a tone: the encoder works as hard as on a show.
std::vector<float> busySignal(std::size_t count, double sampleRate);

struct Decoded {
    int sampleRate = 0;
    std::vector<float> samples;
    QString error;
};
Decoded decode(const QString& path);

// Index of the largest magnitude.
std::size_t loudestIndex(std::span<const float> samples);

} // namespace ostrel::recording_test
