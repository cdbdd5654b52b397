#pragma once

// Follows what QLab is playing: one TCP connection to its OSC port, a chosen workspace, cue start
// and stop events, and a light poll of elapsed times while something runs. It only listens: no
// message it sends changes the show. Main thread only; a lost link retries at a fixed delay.
#include <functional>
#include <optional>
#include <vector>

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QTimer>

#include "common/Date.h"
#include "qlab/OSCMessage.h"
#include "qlab/QLabClientState.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabReply.h"
#include "qlab/QLabWorkspace.h"
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

    static constexpr int polledCueLimit = 8;
    static constexpr int pollsPerRelist = 5;

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

    State state() const { return state_; }
    const std::optional<QString>& workspaceName() const { return workspaceName_; }
    // Newest first, with child cues shown as their outermost running group; no Timecode cues.
    const std::vector<QLabCue>& runningCues() const { return runningCues_; }
    const std::optional<QLabCue>& timecodeCue() const { return timecodeCue_; }
    std::optional<QLabCue> currentCue() const;
    // Where the client connects, as last configured.
    const QString& host() const { return host_; }
    quint16 port() const { return port_; }

    // Set by the central model; called with every changed list.
    std::function<void(const std::vector<QLabCue>&)> onRunningCuesChanged;

signals:
    void stateChanged();
    void workspaceNameChanged();
    void runningCuesChanged();
    void timecodeCueChanged();

private:
    void openConnection();
    void closeConnection();
    void connectionLost();
    void connectionReady(QTcpSocket* socket);
    void receive(QTcpSocket* socket);
    void scheduleReconnect(int delayMs);
    void scheduleRefresh(int delayMs);
    void send(const OSCMessage& message);

    void handle(const OSCMessage& message);
    void handle(const QLabReply& reply);
    void chooseWorkspace(const std::vector<QLabWorkspace>& workspaces);
    void workspaceConnected();
    void applyRunningCues(std::vector<QLabCue> cues);
    void requestTimecodeSettings(const QString& cueID, bool includingPropertyReads);
    void publish(std::vector<QLabCue> cues);
    void lookUpUnknownParents();
    void updatePolling();
    void poll();
    void heartbeat();

    void setState(State state);
    void setWorkspaceName(const std::optional<QString>& name);
    QLabCue* rawCue(const QString& id);

    Timings timings_;
    Clock clock_;

    State state_ = State::disconnected;
    std::optional<QString> workspaceName_;
    std::vector<QLabCue> runningCues_;
    std::optional<QLabCue> timecodeCue_;

    QString host_ = QStringLiteral("localhost");
    quint16 port_ = 53000;
    QString passcode_;
    QString preferredWorkspace_;
    bool isEnabled_ = false;
    bool hasBeenConfigured_ = false;
    QPointer<QTcpSocket> connection_;
    SLIPDecoder decoder_;
    std::optional<QString> workspaceID_;
    QElapsedTimer sinceLastMessage_; // since the last OSC message, or the connection's start
    QHash<QString, Date> firstSeen_;
    std::vector<QLabCue> rawCues_;
    QHash<QString, QLabCue> knownCues_;
    QSet<QString> pendingParentLookups_;

    QTimer reconnectTimer_;
    QTimer heartbeatTimer_;
    QTimer pollTimer_;
    QTimer refreshTimer_;
    QTimer connectTimeoutTimer_;
    int pollTick_ = 0;
};

} // namespace ostrel
