#include "network/CrewFraming.h"

#include <cmath>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

#include "sessions/RecordingFormat.h"

namespace ostrel::CrewFraming {

namespace {

// JSON has no NaN or infinity; Qt would write them as null, which the peer can't read back as
// the number it was. Such a message fails to encode instead.
bool isWritable(const QJsonValue& value)
{
    if (value.isDouble()) return std::isfinite(value.toDouble());
    if (value.isArray()) {
        for (const QJsonValue& element : value.toArray())
            if (!isWritable(element)) return false;
    }
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            if (!isWritable(it.value())) return false;
    }
    return true;
}

} // namespace

std::optional<QByteArray> frame(const CrewMessage& message)
{
    const QJsonObject object = CrewMessageJson::encode(message);
    if (!isWritable(object)) return std::nullopt;
    const QByteArray body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (static_cast<quint64>(body.size()) > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    const auto size = static_cast<std::uint32_t>(body.size());
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(headerSize) + body.size());
    bytes.append(static_cast<char>(size >> 24));
    bytes.append(static_cast<char>(size >> 16));
    bytes.append(static_cast<char>(size >> 8));
    bytes.append(static_cast<char>(size));
    bytes.append(body);
    return bytes;
}

std::optional<std::uint32_t> length(QByteArrayView header)
{
    if (static_cast<std::size_t>(header.size()) != headerSize) return std::nullopt;
    std::uint32_t value = 0;
    for (const char byte : header)
        value = (value << 8) | static_cast<std::uint8_t>(byte);
    if (value > maximumBodyLength) return std::nullopt;
    return value;
}

std::variant<CrewMessage, CrewMessageJson::Failure> decode(QByteArrayView body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError)
        return CrewMessageJson::Failure {error.errorString()};
    if (!document.isObject())
        return CrewMessageJson::Failure {QStringLiteral("A crew message must be a JSON object.")};
    return CrewMessageJson::decode(document.object());
}

QByteArray encode(const MeasurementInterval& interval)
{
    return RecordingFormat::encode(RecordedFrame {0.0, 0.0, interval});
}

std::optional<MeasurementInterval> decodeInterval(QByteArrayView data)
{
    if (static_cast<std::size_t>(data.size()) != RecordingFormat::frameSize) return std::nullopt;
    const auto frame = RecordingFormat::decode(data, 0, true);
    if (!frame) return std::nullopt;
    return frame->interval;
}

} // namespace ostrel::CrewFraming
