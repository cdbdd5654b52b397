#include "qlab/QLabFollower.h"

#include <algorithm>
#include <variant>

#include "qlab/QLabMessage.h"
#include "qlab/QLabProtocol.h"

namespace ostrel {

namespace {

template <class... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
// Clang before 17 deduces no aggregate's arguments by itself.
template <class... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

bool endsInTimecodeProperty(const QString& address)
{
    return address.endsWith(QLatin1String("/startTime"))
        || address.endsWith(QLatin1String("/framerate"))
        || address.endsWith(QLatin1String("/outputType"));
}

} // namespace

std::optional<QLabCue> QLabFollower::currentCue() const
{
    if (runningCues_.empty()) return std::nullopt;
    return runningCues_.front();
}

QLabFollower::Effects QLabFollower::configure(bool enabled, const QString& host, quint16 port,
    const QString& passcode, const QString& workspace)
{
    // The host is compared as typed, so an empty field counts as a change every time. The first
    // call always counts, so that a station that starts disabled says "Off".
    const bool changed = !hasBeenConfigured_ || enabled != isEnabled_ || host != host_
        || port != port_ || passcode != passcode_ || workspace != preferredWorkspace_;
    hasBeenConfigured_ = true;
    isEnabled_ = enabled;
    host_ = host.isEmpty() ? QStringLiteral("localhost") : host;
    port_ = port;
    passcode_ = passcode;
    preferredWorkspace_ = workspace;
    if (!changed) return {};

    if (!enabled) {
        closeConnection();
        setState(State::off);
        return take();
    }
    // The current connection stays open until the wait is over.
    add(Effect::ScheduleReconnect {waits_.settleMs});
    return take();
}

QLabFollower::Effects QLabFollower::reconnect()
{
    if (isEnabled_) openConnection();
    return take();
}

QLabFollower::Effects QLabFollower::simulate(
    State state, const std::optional<QString>& workspace, const std::vector<QLabCue>& cues)
{
    // Mirrored updates come twice a second: the line is hung up without publishing an empty list
    // first, so that a cue that stays listed keeps its record open.
    hangUp();
    isEnabled_ = false;
    setState(state);
    setWorkspaceName(workspace);
    publish(cues);
    return take();
}

QLabFollower::Effects QLabFollower::connectionReady()
{
    send(QLabProtocol::workspaces());
    add(Effect::StartHeartbeat {});
    return take();
}

QLabFollower::Effects QLabFollower::connectionLost()
{
    lose();
    return take();
}

QLabFollower::Effects QLabFollower::receive(const OSCMessage& message, Date now)
{
    auto parsed = QLabProtocol::parse(message, now);
    if (!parsed) return {};

    const auto refreshOnUpdate = [this](const QString& workspaceID) {
        if (workspaceID == workspaceID_) add(Effect::ScheduleRefresh {waits_.refreshAfterUpdateMs});
    };
    std::visit(
        Overloaded {
            [&](const QLabMessage::Reply& reply) { handle(reply.reply, now); },
            [&](const QLabMessage::CueStarted& event) {
                // The refresh brings the cue; only the moment of the event is kept here.
                if (!firstSeen_.contains(event.cue.id)) firstSeen_.insert(event.cue.id, now);
                add(Effect::ScheduleRefresh {0});
            },
            [&](const QLabMessage::CueStopped& event) {
                auto remaining = rawCues_;
                std::erase_if(remaining, [&](const QLabCue& cue) { return cue.id == event.id; });
                publish(std::move(remaining));
                firstSeen_.remove(event.id);
                add(Effect::ScheduleRefresh {waits_.refreshAfterStopMs});
            },
            [&](const QLabMessage::WorkspaceUpdated& update) {
                refreshOnUpdate(update.workspaceID);
            },
            [&](const QLabMessage::CueUpdated& update) { refreshOnUpdate(update.workspaceID); },
            [&](const QLabMessage::PlaybackPositionChanged& update) {
                refreshOnUpdate(update.workspaceID);
            },
            [&](const QLabMessage::Disconnect& update) {
                if (update.workspaceID == workspaceID_) lose();
            },
        },
        parsed->value);
    return take();
}

QLabFollower::Effects QLabFollower::refreshDue()
{
    if (workspaceID_) send(QLabProtocol::runningCues(*workspaceID_));
    return take();
}

QLabFollower::Effects QLabFollower::pollDue()
{
    if (!workspaceID_) {
        if (isPolling_) add(Effect::StopPolling {});
        isPolling_ = false;
        return take();
    }
    const auto polled = std::min<std::size_t>(rawCues_.size(), polledCueLimit);
    const std::vector<QLabCue> cues(rawCues_.begin(), rawCues_.begin() + static_cast<long>(polled));
    for (const QLabCue& cue : cues) {
        send(QLabProtocol::cueValues(*workspaceID_, cue.id, QLabProtocol::cueValueKeys));
        if (cue.isTimecodeCue() && !cue.timecodeStart) requestTimecodeSettings(cue.id, false);
    }
    // The re-list also catches a stop event that got lost.
    if (++pollTick_ % pollsPerRelist == 0) send(QLabProtocol::runningCues(*workspaceID_));
    return take();
}

QLabFollower::Effects QLabFollower::heartbeatDue(qint64 silenceMs)
{
    if (silenceMs > waits_.silenceLimitMs) return connectionLost();
    if (workspaceID_ && state_ == State::connected)
        send(QLabProtocol::thump(*workspaceID_));
    else
        // An unconnected follower asks again, so it retries the passcode and finds a workspace
        // opened later.
        send(QLabProtocol::workspaces());
    return take();
}

void QLabFollower::openConnection()
{
    closeConnection();
    if (port_ == 0) {
        setState(State::disconnected);
        return;
    }
    setState(State::connecting);
    add(Effect::OpenConnection {host_, port_});
}

void QLabFollower::closeConnection()
{
    hangUp();
    publish({});
}

void QLabFollower::hangUp()
{
    // A workspace is only chosen on a line that was up; the driver drops the goodbye otherwise.
    if (workspaceID_) send(QLabProtocol::disconnect(*workspaceID_));
    add(Effect::CloseConnection {});
    isPolling_ = false;
    workspaceID_.reset();
    setWorkspaceName(std::nullopt);
    firstSeen_.clear();
}

void QLabFollower::lose()
{
    closeConnection();
    setState(State::disconnected);
    if (isEnabled_) add(Effect::ScheduleReconnect {waits_.reconnectMs});
}

void QLabFollower::handle(const QLabReply& reply, Date now)
{
    const QString& address = reply.address;
    if (address == QLatin1String("/workspaces")) {
        chooseWorkspace(QLabProtocol::parseWorkspaces(reply.data));
        return;
    }
    if (address.endsWith(QLatin1String("/connect"))) {
        const QString text
            = reply.data && reply.data->isString() ? reply.data->toString() : reply.status;
        if (text.startsWith(QLatin1String("ok")))
            workspaceConnected();
        else if (text == QLatin1String("badpass") || reply.status == QLatin1String("denied"))
            setState(State::passcodeRequired);
        else
            setState(State::noWorkspace);
        return;
    }
    if (address.contains(QLatin1String("/runningOrPausedCues"))) {
        if (reply.isOK()) applyRunningCues(QLabProtocol::parseCues(reply.data, now), now);
        return;
    }
    const auto id = QLabProtocol::cueID(address);
    if (id && endsInTimecodeProperty(address)) {
        if (!reply.isOK()) return;
        if (QLabCue* cue = rawCue(*id)) {
            if (QLabProtocol::apply(address, reply.data, *cue, now)) publish(rawCues_);
        }
        return;
    }
    if (address.endsWith(QLatin1String("/valuesForKeys"))) {
        if (!reply.isOK() || !id) return;
        if (QLabCue* cue = rawCue(*id)) {
            QLabProtocol::apply(reply.data, *cue, now);
            publish(rawCues_);
        } else if (pendingParentLookups_.remove(*id)) {
            QLabCue parent;
            parent.id = *id;
            parent.startedAt = now;
            QLabProtocol::apply(reply.data, parent, now);
            knownCues_.insert(*id, parent);
            publish(rawCues_);
        }
        // Otherwise a late answer for a cue that has stopped.
    }
}

void QLabFollower::chooseWorkspace(const std::vector<QLabWorkspace>& workspaces)
{
    if (workspaces.empty()) {
        // The heartbeat asks again, so a workspace opened later is found.
        setState(State::noWorkspace);
        return;
    }
    auto chosen = workspaces.begin();
    if (!preferredWorkspace_.isEmpty()) {
        const auto preferred = std::find_if(
            workspaces.begin(), workspaces.end(), [this](const QLabWorkspace& workspace) {
                return workspace.name.contains(preferredWorkspace_, Qt::CaseInsensitive);
            });
        if (preferred != workspaces.end()) chosen = preferred;
    }
    workspaceID_ = chosen->id;
    setWorkspaceName(chosen->name);
    send(QLabProtocol::connect(chosen->id, passcode_));
}

void QLabFollower::workspaceConnected()
{
    if (!workspaceID_) return;
    setState(State::connected);
    send(QLabProtocol::subscribeToUpdates());
    for (const QString& event : QLabProtocol::listenedEvents)
        send(QLabProtocol::listen(*workspaceID_, event));
    send(QLabProtocol::runningCues(*workspaceID_));
}

void QLabFollower::applyRunningCues(std::vector<QLabCue> cues, Date now)
{
    QStringList newIDs;
    QSet<QString> listed;
    for (QLabCue& cue : cues) {
        if (const QLabCue* previous = rawCue(cue.id)) {
            cue.adoptTiming(*previous);
        } else {
            newIDs.append(cue.id);
            // Nothing earlier is known of a cue already running at connect time.
            cue.startedAt = firstSeen_.value(cue.id, now);
        }
        firstSeen_.insert(cue.id, cue.startedAt);
        listed.insert(cue.id);
    }
    firstSeen_.removeIf([&](const auto& entry) { return !listed.contains(entry.key()); });
    // Newest first; the reply's order settles cues first seen together.
    std::stable_sort(cues.begin(), cues.end(),
        [](const QLabCue& a, const QLabCue& b) { return a.startedAt > b.startedAt; });
    publish(cues);

    if (!workspaceID_) return;
    for (const QString& id : newIDs) {
        send(QLabProtocol::cueValues(*workspaceID_, id, QLabProtocol::cueValueKeys));
        if (const QLabCue* cue = rawCue(id); cue && cue->isTimecodeCue())
            requestTimecodeSettings(id, true);
    }
}

void QLabFollower::requestTimecodeSettings(const QString& cueID, bool includingPropertyReads)
{
    if (!workspaceID_) return;
    send(QLabProtocol::cueValues(*workspaceID_, cueID, QLabProtocol::timecodeKeys));
    if (!includingPropertyReads) return;
    for (const QString& key : QLabProtocol::timecodePropertyKeys)
        send(QLabProtocol::cueProperty(*workspaceID_, cueID, key));
}

void QLabFollower::publish(std::vector<QLabCue> cues)
{
    rawCues_ = std::move(cues);
    if (rawCues_.empty()) {
        knownCues_.clear();
        pendingParentLookups_.clear();
    }
    lookUpUnknownParents();

    std::optional<QLabCue> timecode;
    std::vector<QLabCue> shown;
    for (const QLabCue& cue : rawCues_) {
        if (!cue.isTimecodeCue())
            shown.push_back(cue);
        else if (!timecode)
            timecode = cue;
    }
    if (timecode != timecodeCue_) {
        timecodeCue_ = std::move(timecode);
        add(Effect::TimecodeCueChanged {});
    }
    auto collapsed = QLabProtocol::collapseGroups(shown, knownCues_);
    updatePolling();

    // A new elapsed sample is a change too: the whole record counts.
    if (collapsed == runningCues_) return;
    runningCues_ = std::move(collapsed);
    add(Effect::RunningCuesChanged {runningCues_});
}

void QLabFollower::lookUpUnknownParents()
{
    if (!workspaceID_) return;
    std::vector<QLabCue> candidates = rawCues_;
    for (const QLabCue& known : std::as_const(knownCues_)) {
        if (known.type == QLatin1String("Group")) candidates.push_back(known);
    }
    // Chains of groups resolve one level per answer.
    for (const QLabCue& cue : candidates) {
        if (!cue.parentID) continue;
        const QString& parent = *cue.parentID;
        if (rawCue(parent) || knownCues_.contains(parent) || pendingParentLookups_.contains(parent))
            continue;
        pendingParentLookups_.insert(parent);
        send(QLabProtocol::cueValues(*workspaceID_, parent, QLabProtocol::parentKeys));
    }
}

void QLabFollower::updatePolling()
{
    const bool wanted = !rawCues_.empty() && state_ == State::connected;
    if (wanted == isPolling_) return;
    isPolling_ = wanted;
    if (wanted) {
        pollTick_ = 0;
        add(Effect::StartPolling {});
    } else {
        add(Effect::StopPolling {});
    }
}

void QLabFollower::setState(State state)
{
    if (state == state_) return;
    state_ = state;
    add(Effect::StateChanged {});
}

void QLabFollower::setWorkspaceName(const std::optional<QString>& name)
{
    if (name == workspaceName_) return;
    workspaceName_ = name;
    add(Effect::WorkspaceNameChanged {});
}

QLabCue* QLabFollower::rawCue(const QString& id)
{
    const auto found = std::find_if(
        rawCues_.begin(), rawCues_.end(), [&](const QLabCue& cue) { return cue.id == id; });
    return found == rawCues_.end() ? nullptr : &*found;
}

} // namespace ostrel
