#pragma once

// The byte layout of "measurements.ostrel", the measurement half of a show recording: a 32-byte
// header, then one fixed-size frame per interval, little-endian, so replay can seek by binary
// search in the mapped file without an index. The crew link sends live intervals in the same
// frame.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QByteArrayView>

#include "measurement/SpectrumBand.h"
#include "sessions/RecordedFrame.h"

namespace ostrel::RecordingFormat {

inline constexpr std::array<char, 8> magic {'O', 'S', 'T', 'L', 'F', 'R', 'M', '1'};
inline constexpr std::uint32_t version = 1;
inline constexpr std::uint16_t bandCount = 31;
inline constexpr std::uint16_t fineCount = SpectrumBand::fineCount;
inline constexpr std::size_t headerSize = 32;
// Whole 8-byte words, so the doubles of every frame stay aligned in the mapped file.
inline constexpr std::size_t frameSize = (80 + 2 * (bandCount + fineCount) + 7) / 8 * 8;
inline constexpr char framesFileName[] = "measurements.ostrel";
inline constexpr char audioFileName[] = "audio.aac";

static_assert(bandCount == SpectrumBand::thirdOctaveCount);

// Where each field lies in a frame.
namespace Offset {
inline constexpr std::size_t audioTime = 0;
inline constexpr std::size_t wallTime = 8;
inline constexpr std::size_t energy = 16;
inline constexpr std::size_t peakPower = 24;
inline constexpr std::size_t rawEnergy = 32;
inline constexpr std::size_t sampleCount = 40;
inline constexpr std::size_t sampleRate = 44;
inline constexpr std::size_t level = 48;
inline constexpr std::size_t maxLevel = 52;
inline constexpr std::size_t dominantFrequency = 56;
inline constexpr std::size_t peakFrequency = 60;
inline constexpr std::size_t peakLevel = 64;
inline constexpr std::size_t peakProminence = 68;
inline constexpr std::size_t peakHarmonicLevel = 72;
inline constexpr std::size_t flags = 76;
inline constexpr std::size_t bandLevels = 80;
inline constexpr std::size_t fineBandLevels = bandLevels + 2 * bandCount;
inline constexpr std::size_t end = fineBandLevels + 2 * fineCount; // zero behind, to frameSize
} // namespace Offset

// The fields of MeasurementInterval, Spectrum and SpectralPeak that a frame holds. A field added
// to one of them is lost in every recording and on the crew link unless `Offset`, `encode` and
// `decode` are extended with it; raise the count only then. RecordingFrameFieldsTest refuses to
// compile while a count and its struct disagree.
inline constexpr std::size_t intervalFieldCount = 9;
// The interval's exposure (energy and peak) is kept in a file of its own beside the frames.
inline constexpr std::size_t intervalExposureFieldCount = 2;
inline constexpr std::size_t spectrumFieldCount = 4;
inline constexpr std::size_t peakFieldCount = 4;

namespace Flag {
inline constexpr std::uint32_t clipped = 1u << 0;
inline constexpr std::uint32_t hasSpectrum = 1u << 1;
inline constexpr std::uint32_t hasPeak = 1u << 2;
} // namespace Flag

QByteArray header();
// A file written with other band tables is refused, never converted.
bool isValidHeader(QByteArrayView bytes);

// `frameSize` bytes. Band levels are stored in hundredths of a dB, so they read back rounded
// to 0.01 dB and clamped to -327.68 through 327.67.
QByteArray encode(const RecordedFrame& frame);
// Nothing when fewer than `frameSize` bytes lie at `offset`. Without `includeSpectrum` the
// bands are not read at all, which keeps overviews and statistics cheap.
std::optional<RecordedFrame> decode(QByteArrayView bytes, qsizetype offset, bool includeSpectrum);

} // namespace ostrel::RecordingFormat
