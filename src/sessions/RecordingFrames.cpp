#include "sessions/RecordingFrames.h"

#include <bit>

#include <QtEndian>

#include "sessions/RecordingFormat.h"

namespace ostrel {

namespace {

constexpr auto headerSize = static_cast<qsizetype>(RecordingFormat::headerSize);
constexpr auto frameSize = static_cast<qsizetype>(RecordingFormat::frameSize);

qsizetype offsetOf(qsizetype index)
{
    return headerSize + index * frameSize;
}

} // namespace

RecordingFrames::RecordingFrames(std::shared_ptr<const void> owner, QByteArrayView data)
    : owner_(std::move(owner)), data_(data), count_((data.size() - headerSize) / frameSize)
{
}

QString RecordingFrames::corruptFileError(const QString& fileName)
{
    return QStringLiteral(
        "The file \u201C%1\u201D couldn\u2019t be opened because it isn\u2019t in the correct "
        "format.")
        .arg(fileName);
}

std::optional<RecordingFrames> RecordingFrames::fromMapping(
    std::shared_ptr<const void> owner, QByteArrayView bytes)
{
    if (!RecordingFormat::isValidHeader(bytes)) return std::nullopt;
    return RecordingFrames(std::move(owner), bytes);
}

std::optional<RecordingFrames> RecordingFrames::fromBytes(QByteArray bytes)
{
    if (!RecordingFormat::isValidHeader(bytes)) return std::nullopt;
    auto buffer = std::make_shared<const QByteArray>(std::move(bytes));
    const QByteArrayView view(*buffer);
    return RecordingFrames(std::move(buffer), view);
}

std::optional<RecordedFrame> RecordingFrames::frame(qsizetype index, bool includeSpectrum) const
{
    if (index < 0 || index >= count_) return std::nullopt;
    return RecordingFormat::decode(data_, offsetOf(index), includeSpectrum);
}

double RecordingFrames::timeAt(qsizetype index, qsizetype fieldOffset) const
{
    const char* field = data_.data() + offsetOf(index) + fieldOffset;
    return std::bit_cast<double>(qFromLittleEndian<quint64>(field));
}

std::optional<double> RecordingFrames::audioTime(qsizetype index) const
{
    if (index < 0 || index >= count_) return std::nullopt;
    return timeAt(index, RecordingFormat::Offset::audioTime);
}

std::optional<double> RecordingFrames::wallTime(qsizetype index) const
{
    if (index < 0 || index >= count_) return std::nullopt;
    return timeAt(index, RecordingFormat::Offset::wallTime);
}

std::optional<qsizetype> RecordingFrames::lastIndexAtOrBefore(double seconds) const
{
    qsizetype low = 0;
    qsizetype high = count_;
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (timeAt(middle, RecordingFormat::Offset::audioTime) <= seconds)
            low = middle + 1;
        else
            high = middle;
    }
    if (low == 0) return std::nullopt;
    return low - 1;
}

std::optional<qsizetype> RecordingFrames::firstIndexAtOrAfterWallTime(double seconds) const
{
    qsizetype low = 0;
    qsizetype high = count_;
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (timeAt(middle, RecordingFormat::Offset::wallTime) < seconds)
            low = middle + 1;
        else
            high = middle;
    }
    if (low == count_) return std::nullopt;
    return low;
}

double RecordingFrames::duration() const
{
    if (count_ == 0) return 0.0;
    return timeAt(count_ - 1, RecordingFormat::Offset::audioTime);
}

} // namespace ostrel
