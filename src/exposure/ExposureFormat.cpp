#include "exposure/ExposureFormat.h"

#include <QtEndian>
#include <bit>
#include <cmath>
#include <cstring>

namespace ostrel::ExposureFormat {

namespace {

void putFloat64(char* data, std::size_t offset, double value)
{
    qToLittleEndian(std::bit_cast<quint64>(value), data + offset);
}

double float64At(const char* data, std::size_t offset)
{
    return std::bit_cast<double>(qFromLittleEndian<quint64>(data + offset));
}

} // namespace

QByteArray header()
{
    QByteArray bytes(static_cast<qsizetype>(headerSize), '\0');
    std::memcpy(bytes.data(), magic.data(), magic.size());
    qToLittleEndian(version, bytes.data() + 8);
    qToLittleEndian(static_cast<quint32>(frameSize), bytes.data() + 12);
    return bytes;
}

bool isValidHeader(QByteArrayView bytes)
{
    return bytes.size() >= static_cast<qsizetype>(headerSize)
        && bytes.first(static_cast<qsizetype>(headerSize)) == QByteArrayView(header());
}

QByteArray encode(const ExposureFrame& frame)
{
    QByteArray bytes(static_cast<qsizetype>(frameSize), '\0');
    char* data = bytes.data();
    putFloat64(data, Offset::audioTime, frame.audioTime);
    putFloat64(data, Offset::duration, frame.sample.duration);
    putFloat64(data, Offset::energyTime, frame.sample.energyTime);
    putFloat64(data, Offset::cPeakPower, frame.sample.cPeakPower);
    const ExposureProfile& profile = frame.profile;
    putFloat64(data, Offset::windowSeconds, profile.windowSeconds);
    putFloat64(data, Offset::limit, profile.limit);
    putFloat64(data, Offset::margin, profile.margin);
    const float peak = profile.peakLimit ? static_cast<float>(*profile.peakLimit) : NAN;
    qToLittleEndian(std::bit_cast<quint32>(peak), data + Offset::peakLimit);
    data[Offset::kind] = static_cast<char>(profile.kind);
    data[Offset::flags] = profile.isDailyExposure ? 1 : 0;
    return bytes;
}

std::size_t frameCount(QByteArrayView file)
{
    if (!isValidHeader(file)) return 0;
    return (static_cast<std::size_t>(file.size()) - headerSize) / frameSize;
}

std::optional<ExposureFrame> decode(QByteArrayView file, std::size_t index)
{
    if (index >= frameCount(file)) return std::nullopt;
    const char* data = file.data() + headerSize + index * frameSize;
    const auto kindByte = static_cast<unsigned char>(data[Offset::kind]);
    if (kindByte >= ExposureProfileKinds::all.size()) return std::nullopt;
    const auto kind = static_cast<ExposureProfileKind>(kindByte);
    // The profile is rebuilt from its kind, so bands and the rest come with it; a custom one
    // from what the frame says.
    ExposureProfile profile = kind == ExposureProfileKind::custom
        ? ExposureProfile::custom(float64At(data, Offset::windowSeconds) / 60.0,
            float64At(data, Offset::limit), float64At(data, Offset::margin))
        : ExposureProfile::builtIn(kind);
    const float peak = std::bit_cast<float>(qFromLittleEndian<quint32>(data + Offset::peakLimit));
    if (kind == ExposureProfileKind::custom && std::isfinite(peak)) profile.peakLimit = peak;
    profile.windowSeconds = float64At(data, Offset::windowSeconds);
    profile.limit = float64At(data, Offset::limit);
    profile.margin = float64At(data, Offset::margin);
    profile.isDailyExposure = (data[Offset::flags] & 1) != 0;

    ExposureFrame frame;
    frame.audioTime = float64At(data, Offset::audioTime);
    frame.sample.duration = float64At(data, Offset::duration);
    frame.sample.energyTime = float64At(data, Offset::energyTime);
    frame.sample.cPeakPower = float64At(data, Offset::cPeakPower);
    frame.profile = profile;
    if (!std::isfinite(frame.audioTime) || !std::isfinite(profile.windowSeconds)
        || profile.windowSeconds <= 0.0 || !std::isfinite(profile.limit))
        return std::nullopt;
    return frame;
}

} // namespace ostrel::ExposureFormat
