#pragma once

// A QLab 5 stand-in on loopback: OSC over TCP in SLIP framing, answering in QLab's JSON reply form.
// Tests script its workspaces, passcode, running cues and their values, send cue events and
// updates through it, make it fall silent or drop the line, and read what the client asked.
#include <optional>
#include <vector>

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

#include "qlab/OSCMessage.h"
#include "qlab/SLIPDecoder.h"

namespace ostrel::testing {

class FakeQLab : public QObject {
    Q_OBJECT

public:
    struct Workspace {
        QString id;
        QString name;
        QString passcode; // empty: none needed
    };

    struct Received {
        QString address;
        QStringList strings; // the string arguments, in order
        int connection = 0; // which accepted connection, counted from 1
    };

    explicit FakeQLab(QObject* parent = nullptr);

    // Listens on 127.0.0.1 at a free port, or at a given one.
    bool listen();
    bool listenOn(quint16 port);
    quint16 port() const { return server_.serverPort(); }

    // What QLab would answer.
    std::vector<Workspace> workspaces;
    // The data of a good connect reply; QLab 5 answers "ok" or "ok:view", "ok:edit".
    QString connectGranted = QStringLiteral("ok");
    // When set, every connect reply carries this status and no data.
    std::optional<QString> connectStatusOverride;
    // Entries of the running-cue list, as QLab sends them ("uniqueID", "number", "name", "type").
    QJsonArray runningCues;
    // What "valuesForKeys" answers per cue; only the asked keys go back.
    QHash<QString, QJsonObject> cueValues;
    // While true, requests are read and recorded but nothing is answered.
    bool isSilent = false;
    // While true, running-cue requests wait for releaseRunningCueReplies().
    bool holdsRunningCueReplies = false;

    void releaseRunningCueReplies();
    // Events and updates, to every open connection.
    void sendCueStarted(
        const QString& number, const QString& name, const QString& id, const QString& type);
    void sendCueStopped(
        const QString& number, const QString& name, const QString& id, const QString& type);
    void sendUpdate(const QString& address);
    void sendReply(const QString& address, const QString& workspaceID, const QString& status,
        const std::optional<QJsonValue>& data);
    void send(const OSCMessage& message);
    // Closes every open connection from this end.
    void dropConnections();
    // Stops accepting: later connects are refused.
    void close() { server_.close(); }

    // What the client sent, in order, over all connections.
    const QList<Received>& received() const { return received_; }
    QStringList receivedAddresses() const;
    int count(const QString& address) const;
    void clearReceived() { received_.clear(); }
    int connectionCount() const { return connectionCount_; }
    int openConnectionCount() const;

    // A cue entry as QLab lists it.
    static QJsonObject cueEntry(const QString& id, const QString& number, const QString& name,
        const QString& type = QStringLiteral("Audio"));

signals:
    void messageReceived(const QString& address);

private:
    struct Peer {
        QPointer<QTcpSocket> socket;
        SLIPDecoder decoder;
        int number = 0;
    };

    void accept();
    void read(Peer& peer);
    void answer(Peer& peer, const OSCMessage& message);
    void reply(QTcpSocket* socket, const QString& address, const QString& workspaceID,
        const QString& status, const std::optional<QJsonValue>& data);
    std::optional<Workspace> workspace(const QString& id) const;

    QTcpServer server_;
    std::vector<std::unique_ptr<Peer>> peers_;
    QList<Received> received_;
    QList<std::pair<QPointer<QTcpSocket>, QString>> heldRunningCueRequests_;
    int connectionCount_ = 0;
};

} // namespace ostrel::testing
