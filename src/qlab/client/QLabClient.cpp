#include "qlab/client/QLabClient.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

#include <QTcpSocket>

#include "qlab/QLabMessage.h"
#include "qlab/QLabProtocol.h"
#include "qlab/SLIP.h"

namespace ostrel {

namespace {

template <class... Handlers> struct Overloaded : Handlers... {
    using Handlers::operator()...;
};

bool endsInTimecodeProperty(const QString& address)
{
    return address.endsWith(QLatin1String("/startTime"))
        || address.endsWith(QLatin1String("/framerate"))
        || address.endsWith(QLatin1String("/outputType"));
}

} // namespace

QLabClient::QLabClient(QObject* parent)
    : QLabClient(
        Timings {}, [] { return std::chrono::system_clock::now(); }, parent)
{
}

QLabClient::QLabClient(Timings timings, Clock clock, QObject* parent)
    : QObject(parent), timings_(timings), clock_(std::move(clock))
{
    reconnectTimer_.setSingleShot(true);
    connect(&reconnectTimer_, &QTimer::timeout, this, [this] {
        if (isEnabled_) openConnection();
    });
    refreshTimer_.setSingleShot(true);
    connect(&refreshTimer_, &QTimer::timeout, this, [this] {
        if (workspaceID_) send(QLabProtocol::runningCues(*workspaceID_));
    });
    heartbeatTimer_.setInterval(timings_.heartbeatMs);
    connect(&heartbeatTimer_, &QTimer::timeout, this, &QLabClient::heartbeat);
    pollTimer_.setInterval(timings_.pollMs);
    connect(&pollTimer_, &QTimer::timeout, this, &QLabClient::poll);
    connectTimeoutTimer_.setSingleShot(true);
    connectTimeoutTimer_.setInterval(timings_.connectTimeoutMs);
    connect(&connectTimeoutTimer_, &QTimer::timeout, this, &QLabClient::connectionLost);
}

QLabClient::~QLabClient()
{
    // Nothing is published from here: the owner is going away too.
    if (connection_) connection_->disconnect(this);
}

std::optional<QLabCue> QLabClient::currentCue() const
{
    if (runningCues_.empty()) return std::nullopt;
    return runningCues_.front();
}

void QLabClient::configure(bool enabled, const QString& host, quint16 port, const QString& passcode,
    const QString& workspace)
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
    if (!changed) return;

    if (!enabled) {
        closeConnection();
        setState(State::off);
        return;
    }
    // The current connection stays open until the wait is over.
    scheduleReconnect(timings_.settleMs);
}

void QLabClient::reconnect()
{
    if (isEnabled_) openConnection();
}

void QLabClient::simulate(
    State state, const std::optional<QString>& workspace, const std::vector<QLabCue>& cues)
{
    closeConnection();
    isEnabled_ = false;
    setState(state);
    setWorkspaceName(workspace);
    publish(cues);
}

void QLabClient::openConnection()
{
    closeConnection();
    if (port_ == 0) {
        setState(State::disconnected);
        return;
    }
    setState(State::connecting);

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
        if (socket == connection_) connectionLost();
    });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        if (socket == connection_) connectionLost();
    });
    connectTimeoutTimer_.start();
    socket->connectToHost(host_, port_);
}

void QLabClient::connectionReady(QTcpSocket* socket)
{
    connectTimeoutTimer_.stop();
    // Requests are small and each answer waits on one: Nagle's delay would only slow them.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    decoder_.reset();
    sinceLastMessage_.start();
    send(QLabProtocol::workspaces());
    heartbeatTimer_.start();
}

void QLabClient::receive(QTcpSocket* socket)
{
    const QByteArray bytes = socket->readAll();
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    const auto packets = decoder_.feed({data, static_cast<std::size_t>(bytes.size())});
    for (const auto& packet : packets) {
        // A message may have closed this connection; what follows it belongs to no one.
        if (socket != connection_) return;
        if (auto message = OSCMessage::decoding(packet)) handle(*message);
    }
}

void QLabClient::connectionLost()
{
    closeConnection();
    setState(State::disconnected);
    if (isEnabled_) scheduleReconnect(timings_.reconnectMs);
}

void QLabClient::closeConnection()
{
    reconnectTimer_.stop();
    heartbeatTimer_.stop();
    pollTimer_.stop();
    refreshTimer_.stop();
    connectTimeoutTimer_.stop();

    if (QTcpSocket* socket = connection_) {
        if (workspaceID_ && socket->state() == QAbstractSocket::ConnectedState)
            send(QLabProtocol::disconnect(*workspaceID_));
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

    workspaceID_.reset();
    setWorkspaceName(std::nullopt);
    firstSeen_.clear();
    publish({});
}

void QLabClient::scheduleReconnect(int delayMs)
{
    reconnectTimer_.start(delayMs);
}

void QLabClient::scheduleRefresh(int delayMs)
{
    // Each call replaces the last, so a burst of updates asks once.
    refreshTimer_.start(delayMs);
}

void QLabClient::send(const OSCMessage& message)
{
    if (!connection_ || connection_->state() != QAbstractSocket::ConnectedState) return;
    const auto frame = SLIP::encode(message.encoded());
    connection_->write(
        reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
}

void QLabClient::handle(const OSCMessage& message)
{
    const Date now = clock_();
    // Even a message nobody reads is a sign of life.
    sinceLastMessage_.start();
    auto parsed = QLabProtocol::parse(message, now);
    if (!parsed) return;

    std::visit(Overloaded {
                   [this](const QLabMessage::Reply& reply) { handle(reply.reply); },
                   [this, now](const QLabMessage::CueStarted& event) {
                       // The refresh brings the cue; only the moment of the event is kept here.
                       if (!firstSeen_.contains(event.cue.id)) firstSeen_.insert(event.cue.id, now);
                       scheduleRefresh(0);
                   },
                   [this](const QLabMessage::CueStopped& event) {
                       auto remaining = rawCues_;
                       std::erase_if(
                           remaining, [&](const QLabCue& cue) { return cue.id == event.id; });
                       publish(std::move(remaining));
                       firstSeen_.remove(event.id);
                       scheduleRefresh(timings_.refreshAfterStopMs);
                   },
                   [this](const QLabMessage::WorkspaceUpdated& update) {
                       if (update.workspaceID == workspaceID_)
                           scheduleRefresh(timings_.refreshAfterUpdateMs);
                   },
                   [this](const QLabMessage::CueUpdated& update) {
                       if (update.workspaceID == workspaceID_)
                           scheduleRefresh(timings_.refreshAfterUpdateMs);
                   },
                   [this](const QLabMessage::PlaybackPositionChanged& update) {
                       if (update.workspaceID == workspaceID_)
                           scheduleRefresh(timings_.refreshAfterUpdateMs);
                   },
                   [this](const QLabMessage::Disconnect& update) {
                       if (update.workspaceID == workspaceID_) connectionLost();
                   },
               },
        parsed->value);
}

void QLabClient::handle(const QLabReply& reply)
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
        if (reply.isOK()) applyRunningCues(QLabProtocol::parseCues(reply.data, clock_()));
        return;
    }
    const auto id = QLabProtocol::cueID(address);
    if (id && endsInTimecodeProperty(address)) {
        if (!reply.isOK()) return;
        if (QLabCue* cue = rawCue(*id)) {
            if (QLabProtocol::apply(address, reply.data, *cue, clock_())) publish(rawCues_);
        }
        return;
    }
    if (address.endsWith(QLatin1String("/valuesForKeys"))) {
        if (!reply.isOK() || !id) return;
        const Date now = clock_();
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

void QLabClient::chooseWorkspace(const std::vector<QLabWorkspace>& workspaces)
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

void QLabClient::workspaceConnected()
{
    if (!workspaceID_) return;
    setState(State::connected);
    send(QLabProtocol::subscribeToUpdates());
    for (const QString& event : QLabProtocol::listenedEvents)
        send(QLabProtocol::listen(*workspaceID_, event));
    send(QLabProtocol::runningCues(*workspaceID_));
}

void QLabClient::applyRunningCues(std::vector<QLabCue> cues)
{
    const Date now = clock_();
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

void QLabClient::requestTimecodeSettings(const QString& cueID, bool includingPropertyReads)
{
    if (!workspaceID_) return;
    send(QLabProtocol::cueValues(*workspaceID_, cueID, QLabProtocol::timecodeKeys));
    if (!includingPropertyReads) return;
    for (const QString& key : QLabProtocol::timecodePropertyKeys)
        send(QLabProtocol::cueProperty(*workspaceID_, cueID, key));
}

void QLabClient::publish(std::vector<QLabCue> cues)
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
        emit timecodeCueChanged();
    }
    auto collapsed = QLabProtocol::collapseGroups(shown, knownCues_);
    updatePolling();

    // A new elapsed sample is a change too: the whole record counts.
    if (collapsed == runningCues_) return;
    runningCues_ = std::move(collapsed);
    emit runningCuesChanged();
    if (onRunningCuesChanged) onRunningCuesChanged(runningCues_);
}

void QLabClient::lookUpUnknownParents()
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

void QLabClient::updatePolling()
{
    if (!rawCues_.empty() && state_ == State::connected) {
        if (!pollTimer_.isActive()) {
            pollTick_ = 0;
            pollTimer_.start();
        }
    } else {
        pollTimer_.stop();
    }
}

void QLabClient::poll()
{
    if (!workspaceID_) {
        pollTimer_.stop();
        return;
    }
    // A fixed, small load on the show machine however busy the show: a few cues a second.
    const auto polled = std::min<std::size_t>(rawCues_.size(), polledCueLimit);
    const std::vector<QLabCue> cues(rawCues_.begin(), rawCues_.begin() + static_cast<long>(polled));
    for (const QLabCue& cue : cues) {
        send(QLabProtocol::cueValues(*workspaceID_, cue.id, QLabProtocol::cueValueKeys));
        if (cue.isTimecodeCue() && !cue.timecodeStart) requestTimecodeSettings(cue.id, false);
    }
    // The re-list also catches a stop event that got lost.
    if (++pollTick_ % pollsPerRelist == 0) send(QLabProtocol::runningCues(*workspaceID_));
}

void QLabClient::heartbeat()
{
    // Measured on a monotonic clock, so that a step of the wall clock is not taken for silence.
    if (!sinceLastMessage_.isValid() || sinceLastMessage_.elapsed() > timings_.silenceLimitMs) {
        connectionLost();
        return;
    }
    if (workspaceID_ && state_ == State::connected)
        send(QLabProtocol::thump(*workspaceID_));
    else
        // An unconnected client asks again, so it retries the passcode and finds a workspace
        // opened later.
        send(QLabProtocol::workspaces());
}

void QLabClient::setState(State state)
{
    if (state == state_) return;
    state_ = state;
    emit stateChanged();
}

void QLabClient::setWorkspaceName(const std::optional<QString>& name)
{
    if (name == workspaceName_) return;
    workspaceName_ = name;
    emit workspaceNameChanged();
}

QLabCue* QLabClient::rawCue(const QString& id)
{
    const auto found = std::find_if(
        rawCues_.begin(), rawCues_.end(), [&](const QLabCue& cue) { return cue.id == id; });
    return found == rawCues_.end() ? nullptr : &*found;
}

} // namespace ostrel
