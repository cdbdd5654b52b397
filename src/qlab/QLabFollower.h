#pragma once

// Follows what QLab is playing, without a socket or a timer of its own: messages from QLab, the
// driver's connection events and its timers' firings go in; out come the requests to send, the
// timers to set and what the station shows (the link's state, the workspace, the running cues
// collapsed into their groups, the Timecode cue). It only listens: nothing it sends changes the
// show. The driver hands in the date; the follower never reads a clock.
#include <optional>
#include <utility>
#include <vector>

#include <QHash>
#include <QSet>
#include <QString>
#include <QtGlobal>

#include "common/Date.h"
#include "qlab/OSCMessage.h"
#include "qlab/QLabClientState.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabFollowerEffect.h"
#include "qlab/QLabReply.h"
#include "qlab/QLabWorkspace.h"

namespace ostrel {

class QLabFollower {
public:
    using State = QLabClientState;
    using Effect = QLabFollowerEffect;
    using Effects = std::vector<Effect>;

    // The waits the follower names in its effects, and the silence it tolerates.
    struct Waits {
        int settleMs = 600; // after a settings change, so the user can finish typing
        int reconnectMs = 3000; // after any loss; no back-off
        int silenceLimitMs = 30000;
        int refreshAfterStopMs = 100;
        int refreshAfterUpdateMs = 150;
    };

    // A fixed, small load on the show machine however busy the show.
    static constexpr int polledCueLimit = 8;
    static constexpr int pollsPerRelist = 5;

    QLabFollower() = default;
    explicit QLabFollower(Waits waits) : waits_(waits) { }

    // The caller trims the host and clamps the port. Nothing happens unless something changed;
    // an empty host means "localhost" and always counts as a change.
    Effects configure(bool enabled, const QString& host, quint16 port, const QString& passcode,
        const QString& workspace);
    // A fresh connection at once, when enabled; also what the reconnect timer calls.
    Effects reconnect();
    Effects reconnectDue() { return reconnect(); }
    // A state and cues that did not come from QLab (demo, crew mirror). Disables the follower
    // until it is configured again.
    Effects simulate(
        State state, const std::optional<QString>& workspace, const std::vector<QLabCue>& cues);

    Effects connectionReady();
    // The line closed, failed, or did not open in time.
    Effects connectionLost();
    Effects receive(const OSCMessage& message, Date now);
    Effects refreshDue();
    Effects pollDue();
    // `silenceMs`: how long since the last message or the connection's start, as the driver
    // measures it.
    Effects heartbeatDue(qint64 silenceMs);

    State state() const { return state_; }
    const std::optional<QString>& workspaceName() const { return workspaceName_; }
    // Newest first, with child cues shown as their outermost running group; no Timecode cues.
    const std::vector<QLabCue>& runningCues() const { return runningCues_; }
    const std::optional<QLabCue>& timecodeCue() const { return timecodeCue_; }
    std::optional<QLabCue> currentCue() const;
    const QString& host() const { return host_; }
    quint16 port() const { return port_; }
    bool isEnabled() const { return isEnabled_; }
    bool isPolling() const { return isPolling_; }

private:
    Effects take() { return std::exchange(effects_, {}); }
    template <typename Kind> void add(Kind kind) { effects_.push_back(Effect {std::move(kind)}); }
    void send(OSCMessage message) { add(Effect::Send {std::move(message)}); }

    void openConnection();
    void closeConnection();
    void hangUp();
    void lose();

    void handle(const QLabReply& reply, Date now);
    void chooseWorkspace(const std::vector<QLabWorkspace>& workspaces);
    void workspaceConnected();
    void applyRunningCues(std::vector<QLabCue> cues, Date now);
    void requestTimecodeSettings(const QString& cueID, bool includingPropertyReads);
    void publish(std::vector<QLabCue> cues);
    void lookUpUnknownParents();
    void updatePolling();

    void setState(State state);
    void setWorkspaceName(const std::optional<QString>& name);
    QLabCue* rawCue(const QString& id);

    Waits waits_;
    Effects effects_;

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
    std::optional<QString> workspaceID_;
    QHash<QString, Date> firstSeen_;
    std::vector<QLabCue> rawCues_;
    QHash<QString, QLabCue> knownCues_;
    QSet<QString> pendingParentLookups_;
    bool isPolling_ = false;
    int pollTick_ = 0;
};

} // namespace ostrel
