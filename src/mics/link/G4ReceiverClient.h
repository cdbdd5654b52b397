#pragma once

// Listens to one ew G4 receiver over its UDP text protocol: subscribes to its pushed status,
// renews the subscription, and tells the owner each report and each change of reachability.
// Main thread only; a failed socket is retried at a fixed delay for ever.
#include <functional>
#include <memory>

#include <QHostAddress>
#include <QObject>
#include <QTimer>

#include "common/Date.h"
#include "mics/G4Protocol.h"
#include "mics/MicChannelReport.h"
#include "mics/MicReceiver.h"

class QUdpSocket;

namespace ostrel {

class G4ReceiverClient : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<Date()>;

    // Every wait and port of the link. Tests shorten the waits and pick the receiver's port.
    struct Timings {
        int tickMs = 1000;
        int ticksPerRenewal = 25; // well inside the 60 s push timeout given to the receiver
        double silenceLimit = 5.0; // seconds without a known line before "not responding"
        int restartDelayMs = 5000;
        quint16 receiverPort = G4Protocol::port;
        quint16 localPort = G4Protocol::port;
    };

    G4ReceiverClient(MicReceiver receiver, Timings timings, Clock clock, QObject* parent = nullptr);
    ~G4ReceiverClient() override;

    void start();
    void stop();

    const MicReceiver& receiver() const { return receiver_; }
    const G4Protocol::Status& status() const { return status_; }
    bool isReachable() const { return isReachable_; }
    bool bindsLocalPort() const { return bindsLocalPort_; }
    bool isStarted() const { return socket_ != nullptr; }
    // The port this side is bound to, 0 while stopped.
    quint16 localPort() const;
    QString channelKey() const;
    QString displayName() const;
    // Datagrams dropped because they weren't ASCII text or held no known line.
    qint64 droppedDatagrams() const { return dropped_; }

    std::function<void(const MicChannelReport&)> onReport;
    std::function<void(bool reachable, const QString& name)> onReachabilityChange;

private:
    void becomeReady(const QHostAddress& address);
    void fail();
    void subscribe();
    void receive();
    void handle(const QByteArray& datagram);
    void restartSoon();
    void tick();
    void checkSilence();
    void send(const QByteArray& datagram);

    MicReceiver receiver_;
    Timings timings_;
    Clock clock_;
    std::unique_ptr<QUdpSocket> socket_;
    QHostAddress address_;
    G4Protocol::Status status_;
    QTimer timer_;
    QTimer restartTimer_;
    int elapsedTicks_ = 0;
    bool isReachable_ = false;
    bool bindsLocalPort_ = true;
    qint64 dropped_ = 0;
    // Which start a host lookup belongs to, so a stale answer is ignored.
    int generation_ = 0;
};

} // namespace ostrel
