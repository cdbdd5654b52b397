#include "qlab/QLabProtocol.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ostrel::QLabProtocol {

namespace {

const QString cueStartAddress = QStringLiteral("/qlab/event/workspace/cue/start");
const QString cueStopAddress = QStringLiteral("/qlab/event/workspace/cue/stop");

std::optional<QLabMessage> parseCueEvent(
    const QString& address, const OSCMessage& message, Date now)
{
    QStringList texts;
    for (const auto& argument : message.arguments)
        texts.append(QString::fromStdString(argument.stringValue().value_or(std::string {})));
    // Number, name, unique ID, type; without an ID the event names no cue.
    if (texts.size() < 4 || texts[2].isEmpty()) return std::nullopt;
    if (!address.endsWith(QLatin1String("start")))
        return QLabMessage {QLabMessage::CueStopped {texts[2]}};

    QLabCue cue;
    cue.id = texts[2];
    cue.number = texts[0];
    cue.name = texts[1];
    cue.type = texts[3];
    cue.startedAt = now;
    return QLabMessage {QLabMessage::CueStarted {std::move(cue)}};
}

std::optional<QLabMessage> parseUpdate(const QString& address)
{
    const QStringList pieces = address.split('/', Qt::SkipEmptyParts);
    if (pieces.size() < 3) return std::nullopt;
    const QString& workspace = pieces[2];
    if (pieces.size() == 3) return QLabMessage {QLabMessage::WorkspaceUpdated {workspace}};
    const QString& kind = pieces[3];
    if (kind == QLatin1String("cue_id") && pieces.size() >= 5)
        return QLabMessage {QLabMessage::CueUpdated {workspace, pieces[4]}};
    if (kind == QLatin1String("cueList") && pieces.last() == QLatin1String("playbackPosition"))
        return QLabMessage {QLabMessage::PlaybackPositionChanged {workspace}};
    if (kind == QLatin1String("disconnect"))
        return QLabMessage {QLabMessage::Disconnect {workspace}};
    return std::nullopt;
}

} // namespace

std::optional<QLabMessage> parse(const OSCMessage& message, Date now)
{
    const QString address = QString::fromStdString(message.address);
    if (address.startsWith(QLatin1String("/reply/"))) {
        auto reply = parseReply(message);
        if (!reply) return std::nullopt;
        return QLabMessage {QLabMessage::Reply {std::move(*reply)}};
    }
    if (address == cueStartAddress || address == cueStopAddress)
        return parseCueEvent(address, message, now);
    if (address.startsWith(QLatin1String("/update/workspace/"))) return parseUpdate(address);
    return std::nullopt;
}

std::optional<QLabReply> parseReply(const OSCMessage& message)
{
    std::optional<std::string> json;
    for (const auto& argument : message.arguments) {
        json = argument.stringValue();
        if (json) break;
    }
    if (!json) return std::nullopt;

    QJsonParseError error {};
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(*json), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) return std::nullopt;
    const QJsonObject object = document.object();

    QLabReply reply;
    const QJsonValue address = object.value("address");
    if (address.isString()) {
        reply.address = address.toString();
    } else {
        reply.address = QString::fromStdString(message.address);
        if (reply.address.startsWith(QLatin1String("/reply"))) reply.address.remove(0, 6);
    }
    const QJsonValue workspace = object.value("workspace_id");
    if (workspace.isString()) reply.workspaceID = workspace.toString();
    // A reply without a status counts as good on purpose: older replies carry none.
    const QJsonValue status = object.value("status");
    reply.status = status.isString() ? status.toString() : QStringLiteral("ok");
    if (object.contains("data")) reply.data = object.value("data");
    return reply;
}

std::optional<QString> cueID(const QString& address)
{
    const QStringList pieces = address.split('/', Qt::SkipEmptyParts);
    const qsizetype position = pieces.indexOf(QStringLiteral("cue_id"));
    if (position < 0 || position + 1 >= pieces.size()) return std::nullopt;
    return pieces[position + 1];
}

} // namespace ostrel::QLabProtocol
