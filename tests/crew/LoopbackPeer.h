#pragma once

// A crew connection on the accepting side of a loopback socket, with a plain socket as its peer
// that writes raw bytes and reads raw frames: what the connection tests and the hostile peers use.
#include <memory>
#include <vector>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "crew/CrewConnection.h"
#include "network/CrewFrameReader.h"
#include "network/CrewFraming.h"

namespace ostrel::testsupport {

// Frames read off a plain socket.
class FrameCollector {
public:
    explicit FrameCollector(QTcpSocket& socket) : socket_(socket)
    {
        QObject::connect(&socket_, &QTcpSocket::readyRead, &socket_, [this] { read(); });
    }

    void read()
    {
        while (!reader_.isBroken() && socket_.bytesAvailable() > 0) {
            const qint64 size = std::min<qint64>(reader_.wanted(), socket_.bytesAvailable());
            if (reader_.append(socket_.read(size)) != CrewFrameReader::Outcome::bodyComplete)
                continue;
            auto decoded = CrewFraming::decode(reader_.takeBody());
            if (auto* message = std::get_if<CrewMessage>(&decoded)) messages.push_back(*message);
        }
    }

    std::vector<CrewMessage> messages;

private:
    QTcpSocket& socket_;
    CrewFrameReader reader_;
};

struct AcceptedPair {
    QTcpServer server;
    QTcpSocket peer;
    std::unique_ptr<CrewConnection> connection;
    std::vector<CrewMessage> received;
    int readyCount = 0;
    int closeCount = 0;

    // Listens, connects the plain peer and wraps the accepted side; false if that fails.
    bool open()
    {
        if (!server.listen(QHostAddress::LocalHost, 0)) return false;
        peer.connectToHost(QHostAddress::LocalHost, server.serverPort());
        if (!peer.waitForConnected(5000)) return false;
        if (!server.waitForNewConnection(5000)) return false;
        connection = std::make_unique<CrewConnection>(server.nextPendingConnection());
        connection->onReady = [this] { ++readyCount; };
        connection->onMessage = [this](const CrewMessage& message) { received.push_back(message); };
        connection->onClose = [this] { ++closeCount; };
        connection->start();
        return QTest::qWaitFor([this] { return readyCount == 1; }, 5000);
    }

    void write(const QByteArray& bytes)
    {
        peer.write(bytes);
        peer.flush();
    }
};

inline QByteArray framedHello(const QString& station)
{
    return *CrewFraming::frame(CrewMessages::Hello {station, CrewRole::secondary});
}

inline QByteArray header(qint64 announced)
{
    const auto length = static_cast<std::uint32_t>(announced);
    QByteArray bytes(4, '\0');
    bytes[0] = static_cast<char>(length >> 24);
    bytes[1] = static_cast<char>(length >> 16);
    bytes[2] = static_cast<char>(length >> 8);
    bytes[3] = static_cast<char>(length);
    return bytes;
}

} // namespace ostrel::testsupport
