#pragma once

// One TCP connection between two stations of a crew, on either side: writes framed messages,
// reads them back one by one, says when it is ready and when it is over. It closes exactly once;
// a new connection is a new object. Main thread only.
#include <chrono>
#include <functional>
#include <optional>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

#include "network/CrewFrameReader.h"
#include "network/CrewMessage.h"
#include "network/CrewRole.h"

namespace ostrel {

class CrewConnection : public QObject {
    Q_OBJECT

public:
    // The socket options both sides use: no delay, and keep-alive finding a dead peer about
    // 5 + 3 x 2 = 11 seconds after it went silent.
    static constexpr int keepAliveIdleSeconds = 5;
    static constexpr int keepAliveIntervalSeconds = 2;
    static constexpr int keepAliveCount = 3;
    // What Qt may hold of a peer's bytes before this reads them, so that a peer's stream costs
    // at most this plus the frame being read.
    static constexpr qint64 socketReadBuffer = 64 * 1024;
    // A peer that stops reading is dropped once this much waits to be sent to it.
    static constexpr qint64 sendBacklogLimit = 16 * 1024 * 1024;
    static constexpr std::chrono::milliseconds defaultConnectTimeout {5000};

    // Takes the socket, connected (accepted by a server) or about to connect.
    explicit CrewConnection(QTcpSocket* socket, QObject* parent = nullptr);
    ~CrewConnection() override;

    // Sets the options on a connected socket; false when the system refused one.
    static bool applyParameters(QTcpSocket& socket);

    // Begins: `onReady` follows once the socket is connected, on a later turn of the loop.
    void start(std::chrono::milliseconds connectTimeout = defaultConnectTimeout);
    void send(const CrewMessage& message);
    void close();

    bool isClosed() const { return isClosed_; }
    bool isReady() const { return isReady_; }
    QTcpSocket* socket() const { return socket_; }
    const CrewFrameReader& reader() const { return reader_; }

    // On a primary: the peer's name and role, from its hello.
    std::optional<QString> station;
    std::optional<CrewRole> role;

    std::function<void()> onReady;
    std::function<void(const CrewMessage&)> onMessage;
    std::function<void()> onClose;

private:
    void becomeReady();
    void readAvailable();
    void handleBody(const QByteArray& body);
    void peerClosed();
    void failed();

    QPointer<QTcpSocket> socket_;
    CrewFrameReader reader_;
    QTimer connectTimer_;
    bool isStarted_ = false;
    bool isReady_ = false;
    bool isClosed_ = false;
};

} // namespace ostrel
