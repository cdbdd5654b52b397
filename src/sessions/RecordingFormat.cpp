#include "sessions/RecordingFormat.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include <QtEndian>

#include "common/FloatNarrowing.h"

namespace ostrel::RecordingFormat {

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

void putFloat64(char* frame, std::size_t offset, double value)
{
    qToLittleEndian(std::bit_cast<quint64>(value), frame + offset);
}

void putFloat32(char* frame, std::size_t offset, double value)
{
    qToLittleEndian(std::bit_cast<quint32>(narrowedToFloat(value)), frame + offset);
}

void putUInt32(char* frame, std::size_t offset, std::uint32_t value)
{
    qToLittleEndian(static_cast<quint32>(value), frame + offset);
}

void putUInt16(char* frame, std::size_t offset, std::uint16_t value)
{
    qToLittleEndian(static_cast<quint16>(value), frame + offset);
}

double float64(const char* frame, std::size_t offset)
{
    return std::bit_cast<double>(qFromLittleEndian<quint64>(frame + offset));
}

double float32(const char* frame, std::size_t offset)
{
    return std::bit_cast<float>(qFromLittleEndian<quint32>(frame + offset));
}

std::uint32_t uint32(const char* frame, std::size_t offset)
{
    return qFromLittleEndian<quint32>(frame + offset);
}

// Hundredths of a dB, half away from zero; a level that is not a number stores as the floor.
std::int16_t centibels(double level)
{
    if (std::isnan(level)) return -20000;
    const double clamped = std::clamp(std::round(level * 100.0), -32768.0, 32767.0);
    return static_cast<std::int16_t>(clamped);
}

template <std::size_t N>
void putLevels(char* frame, std::size_t offset, const std::array<double, N>& levels)
{
    for (std::size_t i = 0; i < N; ++i)
        qToLittleEndian(static_cast<qint16>(centibels(levels[i])), frame + offset + 2 * i);
}

template <std::size_t N>
void readLevels(const char* frame, std::size_t offset, std::array<double, N>& levels)
{
    for (std::size_t i = 0; i < N; ++i)
        levels[i] = qFromLittleEndian<qint16>(frame + offset + 2 * i) / 100.0;
}

std::optional<double> unlessNaN(double value)
{
    if (std::isnan(value)) return std::nullopt;
    return value;
}

} // namespace

QByteArray header()
{
    QByteArray bytes(static_cast<qsizetype>(headerSize), '\0');
    char* data = bytes.data();
    std::memcpy(data, magic.data(), magic.size());
    putUInt32(data, 8, version);
    putUInt32(data, 12, static_cast<std::uint32_t>(frameSize));
    putUInt16(data, 16, bandCount);
    putUInt16(data, 18, fineCount);
    return bytes;
}

bool isValidHeader(QByteArrayView bytes)
{
    if (bytes.size() < static_cast<qsizetype>(headerSize)) return false;
    const char* data = bytes.data();
    return std::equal(magic.begin(), magic.end(), data) && uint32(data, 8) == version
        && uint32(data, 12) == frameSize && qFromLittleEndian<quint16>(data + 16) == bandCount
        && qFromLittleEndian<quint16>(data + 18) == fineCount;
}

QByteArray encode(const RecordedFrame& frame)
{
    QByteArray bytes(static_cast<qsizetype>(frameSize), '\0');
    char* data = bytes.data();
    const MeasurementInterval& interval = frame.interval;
    putFloat64(data, Offset::audioTime, frame.audioTime);
    putFloat64(data, Offset::wallTime, frame.wallTime);
    putFloat64(data, Offset::energy, interval.energy);
    putFloat64(data, Offset::peakPower, interval.peakPower);
    putFloat64(data, Offset::rawEnergy, interval.rawEnergy);
    putUInt32(data, Offset::sampleCount,
        static_cast<std::uint32_t>(std::clamp<std::int64_t>(
            interval.sampleCount, 0, std::numeric_limits<std::uint32_t>::max())));
    putFloat32(data, Offset::sampleRate, interval.sampleRate);
    putFloat32(data, Offset::level, interval.level);
    putFloat32(data, Offset::maxLevel, interval.maxLevel);

    std::uint32_t flags = interval.clipped ? Flag::clipped : 0;
    const Spectrum* spectrum = interval.spectrum ? &*interval.spectrum : nullptr;
    const SpectralPeak* peak = spectrum && spectrum->peak ? &*spectrum->peak : nullptr;
    putFloat32(data, Offset::dominantFrequency,
        spectrum ? spectrum->dominantFrequency.value_or(notANumber) : notANumber);
    putFloat32(data, Offset::peakFrequency, peak ? peak->frequency : notANumber);
    putFloat32(data, Offset::peakLevel, peak ? peak->level : notANumber);
    putFloat32(data, Offset::peakProminence, peak ? peak->prominence : notANumber);
    putFloat32(data, Offset::peakHarmonicLevel, peak ? peak->harmonicLevel : notANumber);
    if (spectrum) {
        flags |= Flag::hasSpectrum;
        // The spectrum's arrays have exactly the file's band counts, so nothing needs padding.
        putLevels(data, Offset::bandLevels, spectrum->bandLevels);
        putLevels(data, Offset::fineBandLevels, spectrum->fineBandLevels);
    }
    if (peak) flags |= Flag::hasPeak;
    putUInt32(data, Offset::flags, flags);
    return bytes;
}

std::optional<RecordedFrame> decode(QByteArrayView bytes, qsizetype offset, bool includeSpectrum)
{
    if (offset < 0 || bytes.size() - offset < static_cast<qsizetype>(frameSize))
        return std::nullopt;
    const char* data = bytes.data() + offset;

    RecordedFrame frame;
    frame.audioTime = float64(data, Offset::audioTime);
    frame.wallTime = float64(data, Offset::wallTime);
    MeasurementInterval& interval = frame.interval;
    interval.energy = float64(data, Offset::energy);
    interval.peakPower = float64(data, Offset::peakPower);
    interval.rawEnergy = float64(data, Offset::rawEnergy);
    interval.sampleCount = uint32(data, Offset::sampleCount);
    interval.sampleRate = float32(data, Offset::sampleRate);
    interval.level = float32(data, Offset::level);
    interval.maxLevel = float32(data, Offset::maxLevel);
    const std::uint32_t flags = uint32(data, Offset::flags);
    interval.clipped = (flags & Flag::clipped) != 0;
    if (!includeSpectrum || (flags & Flag::hasSpectrum) == 0) return frame;

    Spectrum& spectrum = interval.spectrum.emplace();
    readLevels(data, Offset::bandLevels, spectrum.bandLevels);
    readLevels(data, Offset::fineBandLevels, spectrum.fineBandLevels);
    spectrum.dominantFrequency = unlessNaN(float32(data, Offset::dominantFrequency));
    const double peakFrequency = float32(data, Offset::peakFrequency);
    if ((flags & Flag::hasPeak) != 0 && !std::isnan(peakFrequency)) {
        spectrum.peak = SpectralPeak {peakFrequency, float32(data, Offset::peakLevel),
            float32(data, Offset::peakProminence), float32(data, Offset::peakHarmonicLevel)};
    }
    return frame;
}

} // namespace ostrel::RecordingFormat
