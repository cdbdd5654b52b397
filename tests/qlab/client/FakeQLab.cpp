#include "FakeQLab.h"

#include <QJsonDocument>

#include "qlab/SLIP.h"

namespace ostrel::testing {

namespace {

QStringList stringArguments(const OSCMessage& message)
{
    QStringList strings;
    for (const auto& argument : message.arguments) {
        if (auto text = argument.stringValue()) strings.append(QString::fromStdString(*text));
    }
    return strings;
}

void write(QTcpSocket* socket, const OSCMessage& message)
{
    if (!socket || socket->state() != QAbstractSocket::ConnectedState) return;
    const auto frame = SLIP::encode(message.encoded());
    socket->write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
}

} // namespace

FakeQLab::FakeQLab(QObject* parent) : QObject(parent)
{
    connect(&server_, &QTcpServer::newConnection, this, &FakeQLab::accept);
}

bool FakeQLab::listen()
{
    return listenOn(0);
}

bool FakeQLab::listenOn(quint16 port)
{
    return server_.listen(QHostAddress::LocalHost, port);
}

QJsonObject FakeQLab::cueEntry(
    const QString& id, const QString& number, const QString& name, const QString& type)
{
    return QJsonObject {{"uniqueID", id}, {"number", number}, {"name", name}, {"type", type}};
}

void FakeQLab::accept()
{
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        auto peer = std::make_unique<Peer>();
        peer->socket = socket;
        peer->number = ++connectionCount_;
        Peer* raw = peer.get();
        connect(socket, &QTcpSocket::readyRead, this, [this, raw] { read(*raw); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        peers_.push_back(std::move(peer));
    }
}

void FakeQLab::read(Peer& peer)
{
    if (!peer.socket) return;
    const QByteArray bytes = peer.socket->readAll();
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    for (const auto& packet : peer.decoder.feed({data, static_cast<std::size_t>(bytes.size())})) {
        auto message = OSCMessage::decoding(packet);
        if (!message) continue;
        const QString address = QString::fromStdString(message->address);
        received_.append({address, stringArguments(*message), peer.number});
        if (!isSilent) answer(peer, *message);
        emit messageReceived(address);
    }
}

void FakeQLab::answer(Peer& peer, const OSCMessage& message)
{
    const QString address = QString::fromStdString(message.address);
    QTcpSocket* socket = peer.socket;
    if (address == QLatin1String("/workspaces")) {
        QJsonArray list;
        for (const auto& entry : workspaces)
            list.append(QJsonObject {{"uniqueID", entry.id}, {"displayName", entry.name},
                {"hasPasscode", !entry.passcode.isEmpty()}, {"version", "5.4.1"}});
        reply(socket, address, QString(), QStringLiteral("ok"), list);
        return;
    }
    if (address == QLatin1String("/updates")) {
        reply(socket, address, QString(), QStringLiteral("ok"), std::nullopt);
        return;
    }
    const QStringList pieces = address.split('/', Qt::SkipEmptyParts);
    if (pieces.size() < 3 || pieces[0] != QLatin1String("workspace")) return;
    const QString& workspaceID = pieces[1];
    const QString& request = pieces[2];

    if (request == QLatin1String("connect")) {
        if (connectStatusOverride) {
            reply(socket, address, workspaceID, *connectStatusOverride, std::nullopt);
            return;
        }
        const auto known = workspace(workspaceID);
        const QStringList given = stringArguments(message);
        const QString passcode = given.isEmpty() ? QString() : given.first();
        if (!known)
            reply(socket, address, workspaceID, QStringLiteral("error"), std::nullopt);
        else if (!known->passcode.isEmpty() && known->passcode != passcode)
            reply(socket, address, workspaceID, QStringLiteral("ok"), QStringLiteral("badpass"));
        else
            reply(socket, address, workspaceID, QStringLiteral("ok"), connectGranted);
    } else if (request == QLatin1String("runningOrPausedCues")) {
        if (holdsRunningCueReplies)
            heldRunningCueRequests_.append({socket, address});
        else
            reply(socket, address, workspaceID, QStringLiteral("ok"), runningCues);
    } else if (request == QLatin1String("cue_id") && pieces.size() >= 5) {
        const QString& cue = pieces[3];
        const QString& key = pieces[4];
        const QJsonObject values = cueValues.value(cue);
        if (key == QLatin1String("valuesForKeys")) {
            const QStringList arguments = stringArguments(message);
            const auto asked = QJsonDocument::fromJson(arguments.value(0).toUtf8()).array();
            QJsonObject answered;
            for (const QJsonValue& wanted : asked) {
                if (values.contains(wanted.toString()))
                    answered.insert(wanted.toString(), values.value(wanted.toString()));
            }
            reply(socket, address, workspaceID, QStringLiteral("ok"), answered);
        } else if (values.contains(key)) {
            reply(socket, address, workspaceID, QStringLiteral("ok"), values.value(key));
        } else {
            reply(socket, address, workspaceID, QStringLiteral("error"), std::nullopt);
        }
    } else if (request == QLatin1String("thump")) {
        reply(socket, address, workspaceID, QStringLiteral("ok"), QStringLiteral("thump"));
    } else if (request == QLatin1String("listen")) {
        reply(socket, address, workspaceID, QStringLiteral("ok"), std::nullopt);
    }
    // "disconnect" gets no answer, as from QLab.
}

void FakeQLab::releaseRunningCueReplies()
{
    const auto held = std::exchange(heldRunningCueRequests_, {});
    for (const auto& [socket, address] : held) {
        const QString workspaceID = address.split('/', Qt::SkipEmptyParts).value(1);
        reply(socket, address, workspaceID, QStringLiteral("ok"), runningCues);
    }
}

void FakeQLab::reply(QTcpSocket* socket, const QString& address, const QString& workspaceID,
    const QString& status, const std::optional<QJsonValue>& data)
{
    QJsonObject object {{"address", address}, {"status", status}};
    if (!workspaceID.isEmpty()) object.insert("workspace_id", workspaceID);
    if (data) object.insert("data", *data);
    const QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact);
    write(socket,
        OSCMessage(("/reply" + address).toStdString(), {OSCArgument::string(json.toStdString())}));
}

void FakeQLab::sendReply(const QString& address, const QString& workspaceID, const QString& status,
    const std::optional<QJsonValue>& data)
{
    for (const auto& peer : peers_)
        reply(peer->socket, address, workspaceID, status, data);
}

void FakeQLab::sendCueStarted(
    const QString& number, const QString& name, const QString& id, const QString& type)
{
    send(OSCMessage("/qlab/event/workspace/cue/start",
        {OSCArgument::string(number.toStdString()), OSCArgument::string(name.toStdString()),
            OSCArgument::string(id.toStdString()), OSCArgument::string(type.toStdString())}));
}

void FakeQLab::sendCueStopped(
    const QString& number, const QString& name, const QString& id, const QString& type)
{
    send(OSCMessage("/qlab/event/workspace/cue/stop",
        {OSCArgument::string(number.toStdString()), OSCArgument::string(name.toStdString()),
            OSCArgument::string(id.toStdString()), OSCArgument::string(type.toStdString())}));
}

void FakeQLab::sendUpdate(const QString& address)
{
    send(OSCMessage(address.toStdString()));
}

void FakeQLab::send(const OSCMessage& message)
{
    for (const auto& peer : peers_)
        write(peer->socket, message);
}

void FakeQLab::dropConnections()
{
    for (const auto& peer : peers_) {
        if (peer->socket) peer->socket->abort();
    }
}

QStringList FakeQLab::receivedAddresses() const
{
    QStringList addresses;
    for (const auto& entry : received_)
        addresses.append(entry.address);
    return addresses;
}

int FakeQLab::count(const QString& address) const
{
    return static_cast<int>(std::count_if(received_.begin(), received_.end(),
        [&](const Received& entry) { return entry.address == address; }));
}

int FakeQLab::openConnectionCount() const
{
    return static_cast<int>(std::count_if(peers_.begin(), peers_.end(), [](const auto& peer) {
        return peer->socket && peer->socket->state() == QAbstractSocket::ConnectedState;
    }));
}

std::optional<FakeQLab::Workspace> FakeQLab::workspace(const QString& id) const
{
    for (const auto& entry : workspaces) {
        if (entry.id == id) return entry;
    }
    return std::nullopt;
}

} // namespace ostrel::testing
