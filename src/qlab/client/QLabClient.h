#pragma once

// The station's link to QLab: one TCP connection to its OSC port, SLIP framing and the timers,
// around a QLabFollower that decides what to ask and what the cues are. Main thread only; a lost
// link retries at a fixed delay.
#include <functional>
#include <optional>
#include <vector>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include "common/Date.h"
#include "qlab/OSCMessage.h"
#include "qlab/QLabClientState.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabFollower.h"
#include "qlab/SLIPDecoder.h"

class QTcpSocket;

namespace ostrel {

class QLabClient : public QObject {
    Q_OBJECT

public:
    using State = QLabClientState;
    using Clock = std::function<Date()>;

    // Every wait of the client. Tests shorten them; the station uses the defaults.
    struct Timings {
        int settleMs = 600; // after a settings change, so the user can finish typing
        int reconnectMs = 3000; // after any loss; no back-off
        int connectTimeoutMs = 5000;
        int heartbeatMs = 10000;
        int silenceLimitMs = 30000;
        int pollMs = 1000;
        int refreshAfterStopMs = 100;
        int refreshAfterUpdateMs = 150;
    };

    static constexpr int polledCueLimit = QLabFollower::polledCueLimit;
    static constexpr int pollsPerRelist = QLabFollower::pollsPerRelist;

    explicit QLabClient(QObject* parent = nullptr);
    QLabClient(Timings timings, Clock clock, QObject* parent = nullptr);
    ~QLabClient() override;

    // The caller trims the host and clamps the port. Reconnects after a short wait only when
    // something changed; an empty host means "localhost" and always counts as a change.
    void configure(bool enabled, const QString& host, quint16 port, const QString& passcode,
        const QString& workspace);
    // Opens a fresh connection at once, when enabled.
    void reconnect();
    // Publishes a state and cues that did not come from QLab (demo, crew mirror). Disables the
    // client until it is configured again.
    void simulate(
        State state, const std::optional<QString>& workspace, const std::vector<QLabCue>& cues);

    State state() const { return follower_.state(); }
    const std::optional<QString>& workspaceName() const { return follower_.workspaceName(); }
    // Newest first, with child cues shown as their outermost running group; no Timecode cues.
    const std::vector<QLabCue>& runningCues() const { return follower_.runningCues(); }
    const std::optional<QLabCue>& timecodeCue() const { return follower_.timecodeCue(); }
    std::optional<QLabCue> currentCue() const { return follower_.currentCue(); }
    // Where the client connects, as last configured.
    const QString& host() const { return follower_.host(); }
    quint16 port() const { return follower_.port(); }

    // Set by the central model; called with every changed list.
    std::function<void(const std::vector<QLabCue>&)> onRunningCuesChanged;

signals:
    void stateChanged();
    void workspaceNameChanged();
    void runningCuesChanged();
    void timecodeCueChanged();

private:
    void carryOut(const QLabFollower::Effects& effects);
    void openConnection(const QString& host, quint16 port);
    void closeConnection();
    void connectionReady(QTcpSocket* socket);
    void receive(QTcpSocket* socket);
    void send(const OSCMessage& message);

    Timings timings_;
    Clock clock_;
    QLabFollower follower_;

    QPointer<QTcpSocket> connection_;
    SLIPDecoder decoder_;
    QElapsedTimer sinceLastMessage_; // since the last OSC message, or the connection's start

    QTimer reconnectTimer_;
    QTimer heartbeatTimer_;
    QTimer pollTimer_;
    QTimer refreshTimer_;
    QTimer connectTimeoutTimer_;
};

} // namespace ostrel
