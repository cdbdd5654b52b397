#include "qlab/client/QLabClient.h"

#include <chrono>
#include <limits>
#include <utility>
#include <variant>

#include <QTcpSocket>

#include "qlab/SLIP.h"

namespace ostrel {

namespace {

template <class... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

QLabFollower::Waits waitsOf(const QLabClient::Timings& timings)
{
    QLabFollower::Waits waits;
    waits.settleMs = timings.settleMs;
    waits.reconnectMs = timings.reconnectMs;
    waits.silenceLimitMs = timings.silenceLimitMs;
    waits.refreshAfterStopMs = timings.refreshAfterStopMs;
    waits.refreshAfterUpdateMs = timings.refreshAfterUpdateMs;
    return waits;
}

} // namespace

QLabClient::QLabClient(QObject* parent)
    : QLabClient(
        Timings {}, [] { return std::chrono::system_clock::now(); }, parent)
{
}

QLabClient::QLabClient(Timings timings, Clock clock, QObject* parent)
    : QObject(parent), timings_(timings), clock_(std::move(clock)), follower_(waitsOf(timings))
{
    reconnectTimer_.setSingleShot(true);
    connect(
        &reconnectTimer_, &QTimer::timeout, this, [this] { carryOut(follower_.reconnectDue()); });
    refreshTimer_.setSingleShot(true);
    connect(&refreshTimer_, &QTimer::timeout, this, [this] { carryOut(follower_.refreshDue()); });
    heartbeatTimer_.setInterval(timings_.heartbeatMs);
    connect(&heartbeatTimer_, &QTimer::timeout, this, [this] {
        // Measured on a monotonic clock, so that a step of the wall clock is not taken for
        // silence.
        const qint64 silence = sinceLastMessage_.isValid() ? sinceLastMessage_.elapsed()
                                                           : std::numeric_limits<qint64>::max();
        carryOut(follower_.heartbeatDue(silence));
    });
    pollTimer_.setInterval(timings_.pollMs);
    connect(&pollTimer_, &QTimer::timeout, this, [this] { carryOut(follower_.pollDue()); });
    connectTimeoutTimer_.setSingleShot(true);
    connectTimeoutTimer_.setInterval(timings_.connectTimeoutMs);
    connect(&connectTimeoutTimer_, &QTimer::timeout, this,
        [this] { carryOut(follower_.connectionLost()); });
}

QLabClient::~QLabClient()
{
    // Nothing is published from here: the owner is going away too.
    if (connection_) connection_->disconnect(this);
}

void QLabClient::configure(bool enabled, const QString& host, quint16 port, const QString& passcode,
    const QString& workspace)
{
    carryOut(follower_.configure(enabled, host, port, passcode, workspace));
}

void QLabClient::reconnect()
{
    carryOut(follower_.reconnect());
}

void QLabClient::simulate(
    State state, const std::optional<QString>& workspace, const std::vector<QLabCue>& cues)
{
    carryOut(follower_.simulate(state, workspace, cues));
}

void QLabClient::carryOut(const QLabFollower::Effects& effects)
{
    using Effect = QLabFollower::Effect;
    for (const Effect& effect : effects) {
        std::visit(
            Overloaded {
                [this](const Effect::Send& send) { this->send(send.message); },
                [this](
                    const Effect::OpenConnection& open) { openConnection(open.host, open.port); },
                [this](const Effect::CloseConnection&) { closeConnection(); },
                [this](
                    const Effect::ScheduleReconnect& wait) { reconnectTimer_.start(wait.delayMs); },
                [this](const Effect::ScheduleRefresh& wait) { refreshTimer_.start(wait.delayMs); },
                [this](const Effect::StartPolling&) { pollTimer_.start(); },
                [this](const Effect::StopPolling&) { pollTimer_.stop(); },
                [this](const Effect::StartHeartbeat&) { heartbeatTimer_.start(); },
                [this](const Effect::StateChanged&) { emit stateChanged(); },
                [this](const Effect::WorkspaceNameChanged&) { emit workspaceNameChanged(); },
                [this](const Effect::TimecodeCueChanged&) { emit timecodeCueChanged(); },
                [this](const Effect::RunningCuesChanged& changed) {
                    emit runningCuesChanged();
                    if (onRunningCuesChanged) onRunningCuesChanged(changed.cues);
                },
            },
            effect.value);
    }
}

void QLabClient::openConnection(const QString& host, quint16 port)
{
    auto* socket = new QTcpSocket(this);
    connection_ = socket;
    // Each handler first checks that its socket is still the current one, so a stale
    // connection cannot touch the client.
    connect(socket, &QTcpSocket::connected, this, [this, socket] {
        if (socket == connection_) connectionReady(socket);
    });
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        if (socket == connection_) receive(socket);
    });
    connect(socket, &QTcpSocket::errorOccurred, this, [this, socket] {
        if (socket == connection_) carryOut(follower_.connectionLost());
    });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        if (socket == connection_) carryOut(follower_.connectionLost());
    });
    connectTimeoutTimer_.start();
    socket->connectToHost(host, port);
}

void QLabClient::connectionReady(QTcpSocket* socket)
{
    connectTimeoutTimer_.stop();
    // Requests are small and each answer waits on one: Nagle's delay would only slow them.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    decoder_.reset();
    sinceLastMessage_.start();
    carryOut(follower_.connectionReady());
}

void QLabClient::receive(QTcpSocket* socket)
{
    const QByteArray bytes = socket->readAll();
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    const auto packets = decoder_.feed({data, static_cast<std::size_t>(bytes.size())});
    for (const auto& packet : packets) {
        // A message may have closed this connection; what follows it belongs to no one.
        if (socket != connection_) return;
        auto message = OSCMessage::decoding(packet);
        if (!message) continue;
        // Even a message nobody reads is a sign of life.
        sinceLastMessage_.start();
        carryOut(follower_.receive(*message, clock_()));
    }
}

void QLabClient::closeConnection()
{
    reconnectTimer_.stop();
    heartbeatTimer_.stop();
    pollTimer_.stop();
    refreshTimer_.stop();
    connectTimeoutTimer_.stop();

    QTcpSocket* socket = connection_;
    if (!socket) return;
    socket->disconnect(this);
    connection_ = nullptr;
    if (socket->state() == QAbstractSocket::ConnectedState) {
        // Lets the goodbye go out; a peer that never reads it cannot keep the socket alive.
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(timings_.connectTimeoutMs, socket, &QObject::deleteLater);
        socket->disconnectFromHost();
    } else {
        if (socket->state() != QAbstractSocket::UnconnectedState) socket->abort();
        socket->deleteLater();
    }
}

void QLabClient::send(const OSCMessage& message)
{
    if (!connection_ || connection_->state() != QAbstractSocket::ConnectedState) return;
    const auto frame = SLIP::encode(message.encoded());
    connection_->write(
        reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
}

} // namespace ostrel
