#include "mics/link/G4ReceiverClient.h"

#include <QHostInfo>
#include <QNetworkDatagram>
#include <QPointer>
#include <QUdpSocket>
#include <algorithm>

#include "mics/link/MicLog.h"

namespace ostrel {

namespace {

bool isAscii(const QByteArray& data)
{
    return std::all_of(data.begin(), data.end(), [](char c) { return (unsigned char)c < 0x80; });
}

} // namespace

G4ReceiverClient::G4ReceiverClient(
    MicReceiver receiver, Timings timings, Clock clock, QObject* parent)
    : QObject(parent), receiver_(std::move(receiver)), timings_(timings), clock_(std::move(clock))
{
    timer_.setInterval(timings_.tickMs);
    connect(&timer_, &QTimer::timeout, this, &G4ReceiverClient::tick);
    restartTimer_.setSingleShot(true);
    restartTimer_.setInterval(timings_.restartDelayMs);
    connect(&restartTimer_, &QTimer::timeout, this, &G4ReceiverClient::start);
}

G4ReceiverClient::~G4ReceiverClient()
{
    stop();
}

QString G4ReceiverClient::channelKey() const
{
    return receiver_.key() + QStringLiteral("#1");
}

QString G4ReceiverClient::displayName() const
{
    if (status_.name) return *status_.name;
    return receiver_.label.isEmpty() ? receiver_.host : receiver_.label;
}

quint16 G4ReceiverClient::localPort() const
{
    return socket_ ? socket_->localPort() : 0;
}

void G4ReceiverClient::start()
{
    if (socket_) return;
    restartTimer_.stop();
    socket_ = std::make_unique<QUdpSocket>();
    connect(socket_.get(), &QUdpSocket::readyRead, this, &G4ReceiverClient::receive);
    elapsedTicks_ = 0;
    timer_.start();
    // Address reuse lets the station share the port with other software that allows it too;
    // replies addressed to the control port then arrive here.
    const quint16 port = bindsLocalPort_ ? timings_.localPort : 0;
    if (!socket_->bind(
            QHostAddress::AnyIPv4, port, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        qCDebug(ostrelMics) << "G4 receiver" << receiver_.host << "can't bind port" << port << ":"
                            << socket_->errorString();
        fail();
        return;
    }
    const QHostAddress address(receiver_.host.trimmed());
    if (!address.isNull()) {
        becomeReady(address);
        return;
    }
    const int generation = ++generation_;
    QPointer<G4ReceiverClient> self(this);
    QHostInfo::lookupHost(
        receiver_.host.trimmed(), this, [self, generation](const QHostInfo& info) {
            if (!self || generation != self->generation_ || !self->socket_) return;
            const auto addresses = info.addresses();
            const auto v4
                = std::find_if(addresses.begin(), addresses.end(), [](const QHostAddress& a) {
                      return a.protocol() == QAbstractSocket::IPv4Protocol;
                  });
            if (v4 == addresses.end()) {
                self->fail();
                return;
            }
            self->becomeReady(*v4);
        });
}

void G4ReceiverClient::becomeReady(const QHostAddress& address)
{
    address_ = address;
    subscribe();
}

void G4ReceiverClient::fail()
{
    // Binding fails when other software holds the port without sharing it: the next attempt takes
    // any free port, and the receiver's answers to it still arrive.
    if (bindsLocalPort_ && !isReachable_) bindsLocalPort_ = false;
    stop();
    restartSoon();
}

void G4ReceiverClient::stop()
{
    timer_.stop();
    ++generation_;
    if (!socket_) return;
    send(G4Protocol::stopPush());
    socket_->disconnect(this);
    socket_->close();
    // Not deleted here: stop may run inside the socket's own signal.
    socket_.release()->deleteLater();
    address_.clear();
}

void G4ReceiverClient::restartSoon()
{
    restartTimer_.start();
}

void G4ReceiverClient::send(const QByteArray& datagram)
{
    if (!socket_ || address_.isNull()) return;
    socket_->writeDatagram(datagram, address_, timings_.receiverPort);
}

void G4ReceiverClient::subscribe()
{
    send(G4Protocol::nameRequest());
    send(G4Protocol::subscribePush());
}

void G4ReceiverClient::receive()
{
    QUdpSocket* socket = socket_.get();
    while (socket && socket == socket_.get() && socket->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = socket->receiveDatagram();
        if (!datagram.isValid()) break;
        handle(datagram.data());
    }
}

void G4ReceiverClient::handle(const QByteArray& datagram)
{
    if (!isAscii(datagram)
        || !G4Protocol::apply(QString::fromLatin1(datagram), status_, clock_())) {
        ++dropped_;
        qCDebug(ostrelMics) << "Dropped a datagram from G4 receiver" << receiver_.host
                            << "without a known line;" << dropped_ << "so far";
        return;
    }
    if (!isReachable_) {
        isReachable_ = true;
        if (onReachabilityChange) onReachabilityChange(true, displayName());
    }
    if (onReport) {
        onReport(MicChannelReport {channelKey(), displayName(), status_.hasSignal(),
            status_.lowSignal(), status_.lowBattery()});
    }
}

void G4ReceiverClient::tick()
{
    if (++elapsedTicks_ >= timings_.ticksPerRenewal) {
        elapsedTicks_ = 0;
        subscribe();
    }
    checkSilence();
}

void G4ReceiverClient::checkSilence()
{
    if (!isReachable_ || !status_.lastHeard) return;
    if (secondsBetween(*status_.lastHeard, clock_()) <= timings_.silenceLimit) return;
    isReachable_ = false;
    if (onReachabilityChange) onReachabilityChange(false, displayName());
    // Wakes a receiver that forgot the subscription.
    subscribe();
}

} // namespace ostrel
