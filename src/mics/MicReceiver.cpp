#include "mics/MicReceiver.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "common/RawValues.h"

namespace ostrel {

QString MicReceiverKinds::rawValue(MicReceiverKind kind)
{
    switch (kind) {
    case MicReceiverKind::g4:
        return QStringLiteral("g4");
    case MicReceiverKind::ewdx:
        return QStringLiteral("ewdx");
    }
    return {};
}

std::optional<MicReceiverKind> MicReceiverKinds::fromRawValue(const QString& raw)
{
    return RawValues::find(all, raw, &rawValue);
}

QString MicReceiverKinds::title(MicReceiverKind kind)
{
    switch (kind) {
    case MicReceiverKind::g4:
        return QStringLiteral("ew G4");
    case MicReceiverKind::ewdx:
        return QStringLiteral("EW-DX");
    }
    return {};
}

QString micReceiverKey(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString MicReceiver::key() const
{
    return micReceiverKey(id);
}

QJsonObject MicReceiver::toJson() const
{
    return QJsonObject {{QStringLiteral("id"), key()},
        {QStringLiteral("kind"), MicReceiverKinds::rawValue(kind)}, {QStringLiteral("host"), host},
        {QStringLiteral("label"), label}};
}

std::optional<MicReceiver> MicReceiver::fromJson(const QJsonObject& object)
{
    const auto id = object.value(QStringLiteral("id"));
    const auto kind = object.value(QStringLiteral("kind"));
    const auto host = object.value(QStringLiteral("host"));
    const auto label = object.value(QStringLiteral("label"));
    if (!id.isString() || !kind.isString() || !host.isString() || !label.isString())
        return std::nullopt;
    const QUuid uuid = QUuid::fromString(id.toString());
    const auto parsedKind = MicReceiverKinds::fromRawValue(kind.toString());
    if (uuid.isNull() || !parsedKind) return std::nullopt;
    return MicReceiver {uuid, *parsedKind, host.toString(), label.toString()};
}

QByteArray MicReceiver::encodeList(const std::vector<MicReceiver>& receivers)
{
    QJsonArray array;
    for (const auto& receiver : receivers)
        array.append(receiver.toJson());
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<MicReceiver>> MicReceiver::decodeList(const QByteArray& data)
{
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isArray()) return std::nullopt;
    std::vector<MicReceiver> receivers;
    for (const auto& element : document.array()) {
        auto receiver = element.isObject() ? fromJson(element.toObject()) : std::nullopt;
        if (!receiver) return std::nullopt;
        receivers.push_back(std::move(*receiver));
    }
    return receivers;
}

} // namespace ostrel
