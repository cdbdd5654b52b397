#include "crew/CrewConnection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <QTcpSocket>

#include "crew/CrewLog.h"
#include "network/CrewFraming.h"

namespace ostrel {

CrewConnection::CrewConnection(QTcpSocket* socket, QObject* parent)
    : QObject(parent), socket_(socket)
{
    socket_->setParent(this);
    socket_->setReadBufferSize(socketReadBuffer);
    connectTimer_.setSingleShot(true);
    connect(&connectTimer_, &QTimer::timeout, this, [this] {
        qCCritical(ostrelCrew, "Crew connection failed: %s", "no answer in time");
        close();
    });
}

CrewConnection::~CrewConnection()
{
    onClose = nullptr;
    if (socket_) {
        socket_->disconnect(this);
        socket_->abort();
    }
}

bool CrewConnection::applyParameters(QTcpSocket& socket)
{
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (descriptor < 0) return false;
    // Qt sets no-delay and keep-alive but not the keep-alive's timing.
    const int idle = keepAliveIdleSeconds;
    const int interval = keepAliveIntervalSeconds;
    const int count = keepAliveCount;
    return setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle) == 0
        && setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval) == 0
        && setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPCNT, &count, sizeof count) == 0;
}

void CrewConnection::start(std::chrono::milliseconds connectTimeout)
{
    if (isStarted_ || isClosed_ || !socket_) return;
    isStarted_ = true;
    connect(socket_, &QTcpSocket::connected, this, &CrewConnection::becomeReady);
    connect(socket_, &QTcpSocket::readyRead, this, &CrewConnection::readAvailable);
    connect(socket_, &QTcpSocket::disconnected, this, &CrewConnection::peerClosed);
    connect(socket_, &QTcpSocket::errorOccurred, this, &CrewConnection::failed);
    if (socket_->state() == QAbstractSocket::ConnectedState) {
        // As for an outgoing connection, ready comes after the owner has finished setting up.
        QMetaObject::invokeMethod(this, &CrewConnection::becomeReady, Qt::QueuedConnection);
    } else {
        connectTimer_.start(connectTimeout);
    }
}

void CrewConnection::becomeReady()
{
    if (isClosed_ || isReady_ || !socket_) return;
    connectTimer_.stop();
    if (!applyParameters(*socket_))
        qCCritical(ostrelCrew, "Crew connection failed: %s", "keep-alive could not be set");
    isReady_ = true;
    const QPointer<CrewConnection> self(this);
    if (onReady) onReady();
    if (self) readAvailable();
}

void CrewConnection::send(const CrewMessage& message)
{
    if (isClosed_ || !socket_) return;
    const auto bytes = CrewFraming::frame(message);
    if (!bytes) return;
    socket_->write(*bytes);
    if (socket_->bytesToWrite() > sendBacklogLimit) {
        qCCritical(ostrelCrew, "Crew connection failed: %s", "the peer has stopped reading");
        close();
    }
}

void CrewConnection::close()
{
    if (isClosed_) return;
    isClosed_ = true;
    connectTimer_.stop();
    if (socket_) {
        socket_->disconnect(this);
        socket_->abort();
    }
    const auto callback = std::move(onClose);
    onClose = nullptr;
    if (callback) callback();
}

void CrewConnection::readAvailable()
{
    if (!isReady_) return;
    const QPointer<CrewConnection> self(this);
    while (self && !isClosed_ && socket_ && socket_->bytesAvailable() > 0) {
        const qint64 size = std::min<qint64>(reader_.wanted(), socket_->bytesAvailable());
        const QByteArray bytes = socket_->read(size);
        switch (reader_.append(bytes)) {
        case CrewFrameReader::Outcome::broken:
            // The stream's place is lost with a bad header: nothing after it can be trusted.
            close();
            return;
        case CrewFrameReader::Outcome::bodyComplete:
            handleBody(reader_.takeBody());
            break;
        case CrewFrameReader::Outcome::needsMore:
            break;
        }
    }
}

void CrewConnection::handleBody(const QByteArray& body)
{
    auto decoded = CrewFraming::decode(body);
    auto* message = std::get_if<CrewMessage>(&decoded);
    if (!message) {
        qCInfo(ostrelCrew, "Ignored an unreadable crew message");
        return;
    }
    if (onMessage) onMessage(*message);
}

void CrewConnection::peerClosed()
{
    // What the peer sent before it went is still read.
    const QPointer<CrewConnection> self(this);
    readAvailable();
    if (self) close();
}

void CrewConnection::failed()
{
    if (isClosed_ || !socket_) return;
    if (socket_->error() == QAbstractSocket::RemoteHostClosedError) {
        peerClosed();
        return;
    }
    qCCritical(ostrelCrew, "Crew connection failed: %s", qUtf8Printable(socket_->errorString()));
    close();
}

} // namespace ostrel
