#include "network/CrewMessage.h"

#include <QJsonArray>

#include "network/CrewJson.h"

namespace ostrel::CrewMessageJson {

namespace {

const QString unnamed = QStringLiteral("_0");

QJsonObject single(const QJsonValue& payload)
{
    return QJsonObject {{unnamed, payload}};
}

QJsonArray messageArray(const std::vector<ChatMessage>& messages)
{
    QJsonArray array;
    for (const ChatMessage& message : messages)
        array.append(message.toJson());
    return array;
}

Failure failure(const QString& caseName, const char* what)
{
    return Failure {QStringLiteral("Unreadable \"%1\" message: %2.").arg(caseName, what)};
}

using Result = std::variant<CrewMessage, Failure>;

Result decodeHello(const QJsonObject& payload)
{
    const auto station = CrewJson::text(payload.value("station"));
    const QJsonValue roleValue = payload.value("role");
    if (!station || !roleValue.isString()) return failure("hello", "station or role missing");
    const QByteArray raw = roleValue.toString().toUtf8();
    const auto role = CrewRoles::fromRawValue(
        std::string_view(raw.constData(), static_cast<std::size_t>(raw.size())));
    if (!role) return failure("hello", "unknown role");
    return CrewMessage {CrewMessages::Hello {*station, *role}};
}

Result decodeInterval(const QJsonObject& payload)
{
    const QJsonValue value = payload.value(unnamed);
    if (!value.isString()) return failure("interval", "no frame");
    auto decoded = QByteArray::fromBase64Encoding(
        value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) return failure("interval", "the frame is not base64");
    return CrewMessage {CrewMessages::Interval {std::move(decoded.decoded)}};
}

Result decodeState(const QJsonObject& payload)
{
    const QJsonValue value = payload.value(unnamed);
    auto state = value.isObject() ? MirrorState::fromJson(value.toObject()) : std::nullopt;
    if (!state) return failure("state", "unreadable state");
    return CrewMessage {CrewMessages::State {std::move(*state)}};
}

Result decodeChat(const QJsonObject& payload)
{
    const QJsonValue value = payload.value(unnamed);
    auto message = value.isObject() ? ChatMessage::fromJson(value.toObject()) : std::nullopt;
    if (!message) return failure("chat", "unreadable message");
    return CrewMessage {CrewMessages::Chat {std::move(*message)}};
}

Result decodeAcknowledge(const QJsonObject& payload)
{
    const auto id = CrewJson::uuid(payload.value("messageID"));
    const auto station = CrewJson::text(payload.value("station"));
    if (!id || !station) return failure("acknowledge", "messageID or station missing");
    return CrewMessage {CrewMessages::Acknowledge {*id, *station}};
}

Result decodeHistory(const QJsonObject& payload)
{
    const QJsonValue value = payload.value(unnamed);
    if (!value.isArray()) return failure("history", "no list");
    CrewMessages::History history;
    for (const QJsonValue& element : value.toArray()) {
        auto message
            = element.isObject() ? ChatMessage::fromJson(element.toObject()) : std::nullopt;
        if (!message) return failure("history", "unreadable message");
        history.messages.push_back(std::move(*message));
    }
    return CrewMessage {std::move(history)};
}

Result decodeRoster(const QJsonObject& payload)
{
    const QJsonValue value = payload.value(unnamed);
    if (!value.isArray()) return failure("roster", "no list");
    CrewMessages::Roster roster;
    for (const QJsonValue& element : value.toArray()) {
        if (!element.isString()) return failure("roster", "a name is not text");
        roster.stations.append(element.toString());
    }
    return CrewMessage {std::move(roster)};
}

struct Encoder {
    QJsonObject operator()(const CrewMessages::Hello& hello) const
    {
        return {{"hello",
            QJsonObject {{"station", hello.station},
                {"role", CrewJson::rawText(CrewRoles::rawValue(hello.role))}}}};
    }
    QJsonObject operator()(const CrewMessages::Interval& interval) const
    {
        return {{"interval", single(QString::fromLatin1(interval.frame.toBase64()))}};
    }
    QJsonObject operator()(const CrewMessages::State& state) const
    {
        return {{"state", single(state.state.toJson())}};
    }
    QJsonObject operator()(const CrewMessages::Chat& chat) const
    {
        return {{"chat", single(chat.message.toJson())}};
    }
    QJsonObject operator()(const CrewMessages::Acknowledge& acknowledge) const
    {
        return {{"acknowledge",
            QJsonObject {{"messageID", CrewJson::uuidText(acknowledge.messageID)},
                {"station", acknowledge.station}}}};
    }
    QJsonObject operator()(const CrewMessages::History& history) const
    {
        return {{"history", single(messageArray(history.messages))}};
    }
    QJsonObject operator()(const CrewMessages::Roster& roster) const
    {
        return {{"roster", single(QJsonArray::fromStringList(roster.stations))}};
    }
};

} // namespace

QJsonObject encode(const CrewMessage& message)
{
    return std::visit(Encoder {}, message);
}

std::variant<CrewMessage, Failure> decode(const QJsonObject& object)
{
    if (object.size() != 1)
        return Failure {QStringLiteral("Invalid number of keys found, expected one.")};
    const QString name = object.begin().key();
    const QJsonValue value = object.begin().value();
    if (!value.isObject())
        return Failure {QStringLiteral("The \"%1\" payload is not an object.").arg(name)};
    const QJsonObject payload = value.toObject();
    if (name == u"hello") return decodeHello(payload);
    if (name == u"interval") return decodeInterval(payload);
    if (name == u"state") return decodeState(payload);
    if (name == u"chat") return decodeChat(payload);
    if (name == u"acknowledge") return decodeAcknowledge(payload);
    if (name == u"history") return decodeHistory(payload);
    if (name == u"roster") return decodeRoster(payload);
    return Failure {QStringLiteral("Unknown crew message \"%1\".").arg(name)};
}

} // namespace ostrel::CrewMessageJson
