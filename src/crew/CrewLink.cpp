#include "crew/CrewLink.h"

#include <avahi-common/error.h>

#include <algorithm>

#include <QPointer>
#include <QSysInfo>
#include <QTcpServer>
#include <QTcpSocket>

#include "common/NaturalOrder.h"
#include "crew/CrewConnection.h"
#include "crew/CrewLog.h"
#include "network/CrewChat.h"
#include "network/CrewFraming.h"
#include "network/avahi/DnsSdBrowser.h"
#include "network/avahi/DnsSdClient.h"
#include "network/avahi/DnsSdPublisher.h"

namespace ostrel {

namespace {

constexpr int listenBacklog = 512;

void sortNaturally(QStringList& names)
{
    std::sort(names.begin(), names.end(),
        [](const QString& a, const QString& b) { return NaturalOrder::compare(a, b) < 0; });
}

} // namespace

CrewLink::CrewLink(Timings timings, std::function<Date()> clock, QObject* parent)
    : QObject(parent),
      dnsSd_(std::make_unique<DnsSdClient>(timings.dnsSdRetry)),
      timings_(timings),
      clock_(clock ? std::move(clock) : [] { return std::chrono::system_clock::now(); })
{
    watchdog_.setInterval(timings_.watchdogTick);
    connect(&watchdog_, &QTimer::timeout, this, &CrewLink::watchdogTick);
    // A daemon that went away takes its announcements with it; the browser reports afresh.
    connect(dnsSd_.get(), &DnsSdClient::aboutToReset, this, [this] {
        announced_.clear();
        endpoints_.clear();
        updateAvailablePrimaries();
    });
    connect(dnsSd_.get(), &DnsSdClient::stateChanged, this, &CrewLink::updateProblem);
    connect(this, &CrewLink::roleChanged, this, &CrewLink::updateProblem);
    retryTimer_.setSingleShot(true);
    connect(&retryTimer_, &QTimer::timeout, this, [this] {
        const auto action = std::move(retryAction_);
        retryAction_ = nullptr;
        if (action) action();
    });
}

QString CrewLink::problemText(CrewRole role, const QString& daemonError)
{
    const QString what = role == CrewRole::primary
        ? QStringLiteral("Secondaries can't find this computer")
        : QStringLiteral("The primary can't be found");
    if (daemonError == QString::fromUtf8(avahi_strerror(AVAHI_ERR_NO_DAEMON)))
        return what + QStringLiteral(": the Avahi daemon isn't running.");
    return what + QStringLiteral(": ") + daemonError + u'.';
}

void CrewLink::updateProblem()
{
    const QString problem = isInCrew() && dnsSd_->state() == DnsSdClient::State::unavailable
        ? problemText(role_, dnsSd_->errorText())
        : QString();
    if (problem == problem_) return;
    problem_ = problem;
    emit problemChanged();
}

CrewLink::~CrewLink()
{
    // Connections, publisher and browser go before the Avahi client they were made over.
    stop();
    dnsSd_.reset();
}

QString CrewLink::roleText() const
{
    const std::string_view raw = CrewRoles::rawValue(role_);
    return QString::fromLatin1(raw.data(), static_cast<qsizetype>(raw.size()));
}

QString CrewLink::resolvedStationName(const QString& stationName)
{
    // Blank is spaces and tabs only: a name of line ends is the user's, odd as it is.
    const auto isBlank = [](const QString& text) {
        return std::all_of(text.begin(), text.end(),
            [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; });
    };
    if (!isBlank(stationName)) return stationName;
    const QString computer = QSysInfo::machineHostName();
    return isBlank(computer) ? QStringLiteral("Ostrel Live") : computer;
}

void CrewLink::configure(CrewRole role, const QString& stationName, const QString& preferredPrimary)
{
    const QString name = resolvedStationName(stationName);
    const bool identityChanged = role != role_ || name != stationName_;
    const bool primaryChanged = preferredPrimary != preferredPrimary_;
    preferredPrimary_ = preferredPrimary;
    if (identityChanged) {
        stop();
        const bool isNewRole = role != role_;
        role_ = role;
        if (isNewRole) emit roleChanged();
        if (name != stationName_) {
            stationName_ = name;
            emit stationNameChanged();
        }
        switch (role_) {
        case CrewRole::standalone:
            dnsSd_->stop();
            setStatus({StatusKind::off, 0, {}});
            break;
        case CrewRole::primary:
            dnsSd_->start();
            startSharing();
            break;
        case CrewRole::secondary:
            dnsSd_->start();
            startSearching();
            break;
        }
        updateStations();
    } else if (primaryChanged && role_ == CrewRole::secondary) {
        if (upstream_) {
            CrewConnection* old = upstream_;
            upstream_ = nullptr;
            old->onClose = nullptr;
            old->close();
            discard(old);
        }
        connectIfNeeded();
    }
}

void CrewLink::stop()
{
    stopSharing();
    const auto connections = std::move(secondaries_);
    secondaries_.clear();
    for (CrewConnection* connection : connections) {
        connection->onClose = nullptr;
        connection->close();
        discard(connection);
    }
    browser_.reset();
    endpoints_.clear();
    announced_.clear();
    if (!availablePrimaries_.isEmpty()) {
        availablePrimaries_.clear();
        emit availablePrimariesChanged();
    }
    if (upstream_) {
        CrewConnection* old = upstream_;
        upstream_ = nullptr;
        old->onClose = nullptr;
        old->close();
        discard(old);
    }
    watchdog_.stop();
    retryTimer_.stop();
    retryAction_ = nullptr;
    lastIntervalDate_.reset();
    setReceiving(false);
    setPrimaryName(std::nullopt);
}

// Primary.

void CrewLink::startSharing()
{
    auto server = std::make_unique<QTcpServer>();
    // A whole crew may knock at once, say after the primary restarts; Qt's backlog of 50 would
    // leave the rest waiting for the kernel's slow retries.
    server->setListenBacklogSize(listenBacklog);
    if (!server->listen(QHostAddress::Any, 0)) {
        qCCritical(ostrelCrew, "Couldn't start sharing: %s", qUtf8Printable(server->errorString()));
        retry(timings_.retryAfterFailure, [this] {
            if (role_ == CrewRole::primary && !listener_) startSharing();
        });
        return;
    }
    // Many secondaries may knock at once; each is taken at once, so none waits in Qt's queue.
    server->setMaxPendingConnections(1024);
    connect(server.get(), &QTcpServer::newConnection, this, &CrewLink::accept);
    connect(server.get(), &QTcpServer::acceptError, this, [this] {
        const QString error = listener_ ? listener_->errorString() : QString();
        // Not inside the server's own signal: it is freed here.
        QMetaObject::invokeMethod(
            this, [this, error] { listenerFailed(error); }, Qt::QueuedConnection);
    });
    publisher_ = std::make_unique<DnsSdPublisher>(*dnsSd_);
    connect(publisher_.get(), &DnsSdPublisher::failed, this, [this](const QString& error) {
        QMetaObject::invokeMethod(
            this, [this, error] { listenerFailed(error); }, Qt::QueuedConnection);
    });
    publisher_->publish(
        stationName_, QString::fromLatin1(serviceType), server->serverPort(), QStringList());
    listener_ = std::move(server);
    setStatus({StatusKind::sharing, 0, {}});
}

void CrewLink::stopSharing()
{
    publisher_.reset();
    listener_.reset();
}

void CrewLink::listenerFailed(const QString& error)
{
    if (!listener_) return;
    qCCritical(ostrelCrew, "Crew listener failed: %s", qUtf8Printable(error));
    stopSharing();
    retry(timings_.retryAfterFailure, [this] {
        if (role_ == CrewRole::primary && !listener_) startSharing();
    });
}

quint16 CrewLink::listeningPort() const
{
    return listener_ ? listener_->serverPort() : 0;
}

void CrewLink::accept()
{
    while (listener_ && listener_->hasPendingConnections()) {
        QTcpSocket* socket = listener_->nextPendingConnection();
        auto* connection = new CrewConnection(socket, this);
        secondaries_.push_back(connection);
        connection->onReady = [this, connection] {
            connection->send(CrewMessages::Hello {stationName_, CrewRole::primary});
            connection->send(
                CrewMessages::History {CrewChat::last(messages_, std::size_t(historyLimit))});
        };
        connection->onMessage = [this, connection](const CrewMessage& message) {
            handleFromSecondary(message, connection);
        };
        connection->onClose = [this, connection] {
            const auto found = std::find(secondaries_.begin(), secondaries_.end(), connection);
            if (found != secondaries_.end()) secondaries_.erase(found);
            discard(connection);
            updateStations();
        };
        connection->start();
        updateStations();
    }
}

void CrewLink::handleFromSecondary(const CrewMessage& message, CrewConnection* connection)
{
    if (const auto* hello = std::get_if<CrewMessages::Hello>(&message)) {
        connection->station = hello->station;
        connection->role = hello->role;
        updateStations();
    } else if (const auto* chat = std::get_if<CrewMessages::Chat>(&message)) {
        receive(chat->message, true);
        broadcast(message, connection);
    } else if (const auto* acknowledgement = std::get_if<CrewMessages::Acknowledge>(&message)) {
        applyAcknowledgement(acknowledgement->messageID, acknowledgement->station);
        broadcast(message, connection);
    }
}

void CrewLink::updateStations()
{
    switch (role_) {
    case CrewRole::standalone:
        setStations({});
        break;
    case CrewRole::secondary:
        if (!upstream_) setStations({stationName_});
        break;
    case CrewRole::primary: {
        QStringList named;
        for (const CrewConnection* connection : secondaries_)
            if (connection->station) named.append(*connection->station);
        sortNaturally(named);
        const int count = static_cast<int>(named.size());
        named.prepend(stationName_);
        setStations(named);
        setStatus({StatusKind::sharing, count, {}});
        broadcast(CrewMessages::Roster {stations_});
        break;
    }
    }
}

void CrewLink::broadcast(const CrewMessage& message, const CrewConnection* except)
{
    if (secondaries_.empty()) return;
    const auto connections = secondaries_;
    for (CrewConnection* connection : connections)
        if (connection != except) connection->send(message);
}

void CrewLink::share(const MeasurementInterval& interval)
{
    if (role_ != CrewRole::primary || secondaries_.empty()) return;
    broadcast(CrewMessages::Interval {CrewFraming::encode(interval)});
}

void CrewLink::share(const MirrorState& state)
{
    if (role_ != CrewRole::primary || secondaries_.empty()) return;
    broadcast(CrewMessages::State {state});
}

// Secondary.

void CrewLink::startSearching()
{
    // A browser made again after a failure must not hide a primary still in hand.
    if (!upstream_) setStatus({StatusKind::searching, 0, {}});
    browser_ = std::make_unique<DnsSdBrowser>(*dnsSd_, QString::fromLatin1(serviceType));
    connect(browser_.get(), &DnsSdBrowser::serviceAdded, this, &CrewLink::serviceFound);
    connect(browser_.get(), &DnsSdBrowser::serviceResolved, this, &CrewLink::serviceResolved);
    connect(browser_.get(), &DnsSdBrowser::serviceRemoved, this, &CrewLink::serviceLost);
    connect(browser_.get(), &DnsSdBrowser::failed, this, &CrewLink::browserFailed);
    browser_->start();
    watchdog_.start();
}

void CrewLink::browserFailed()
{
    // Not inside the browser's own callback: it is freed here.
    QPointer<CrewLink> self(this);
    QMetaObject::invokeMethod(
        this,
        [self] {
            if (!self || !self->browser_) return;
            self->browser_.reset();
            self->retry(self->timings_.retryAfterFailure, [self] {
                if (self && self->role_ == CrewRole::secondary && !self->browser_)
                    self->startSearching();
            });
        },
        Qt::QueuedConnection);
}

void CrewLink::serviceFound(const QString& name)
{
    if (!announced_.contains(name)) announced_.append(name);
    updateAvailablePrimaries();
}

void CrewLink::serviceResolved(const DnsSdService& service)
{
    if (!announced_.contains(service.name)) announced_.append(service.name);
    endpoints_[service.name] = service;
    updateAvailablePrimaries();
    connectIfNeeded();
}

void CrewLink::serviceLost(const QString& name)
{
    announced_.removeAll(name);
    endpoints_.erase(name);
    updateAvailablePrimaries();
    connectIfNeeded();
}

void CrewLink::updateAvailablePrimaries()
{
    QStringList names = announced_;
    sortNaturally(names);
    if (names == availablePrimaries_) return;
    availablePrimaries_ = names;
    emit availablePrimariesChanged();
}

void CrewLink::connectIfNeeded()
{
    if (role_ != CrewRole::secondary || upstream_) return;
    QString choice;
    if (!preferredPrimary_.isEmpty() && availablePrimaries_.contains(preferredPrimary_))
        choice = preferredPrimary_;
    else if (!availablePrimaries_.isEmpty())
        choice = availablePrimaries_.front();
    if (choice.isEmpty()) {
        setStatus({StatusKind::searching, 0, {}});
        return;
    }
    // Announced but not resolved yet: the resolution brings it back here.
    const auto endpoint = endpoints_.find(choice);
    if (endpoint == endpoints_.end()) return;

    setStatus({StatusKind::connecting, 0, choice});
    auto* socket = new QTcpSocket;
    auto* connection = new CrewConnection(socket, this);
    upstream_ = connection;
    connection->onReady = [this, connection] {
        connection->send(CrewMessages::Hello {stationName_, CrewRole::secondary});
    };
    connection->onMessage = [this](const CrewMessage& message) { handleFromPrimary(message); };
    connection->onClose = [this, connection] { primaryLost(connection); };
    socket->connectToHost(endpoint->second.address, endpoint->second.port);
    connection->start();
}

void CrewLink::primaryLost(CrewConnection* connection)
{
    discard(connection);
    if (connection != upstream_) return;
    upstream_ = nullptr;
    setPrimaryName(std::nullopt);
    lastIntervalDate_.reset();
    setReceiving(false);
    setStatus({StatusKind::searching, 0, {}});
    updateStations();
    retry(timings_.retryAfterLoss, [this] { connectIfNeeded(); });
}

void CrewLink::handleFromPrimary(const CrewMessage& message)
{
    if (const auto* hello = std::get_if<CrewMessages::Hello>(&message)) {
        setPrimaryName(hello->station);
        setStatus({StatusKind::connected, 0, hello->station});
    } else if (const auto* interval = std::get_if<CrewMessages::Interval>(&message)) {
        const auto decoded = CrewFraming::decodeInterval(interval->frame);
        if (!decoded) return;
        lastIntervalDate_ = clock_();
        // A reconnected screen goes live at once, not at the watchdog's next tick.
        setReceiving(true);
        if (onInterval) onInterval(*decoded);
    } else if (const auto* state = std::get_if<CrewMessages::State>(&message)) {
        if (primaryName_ != state->state.station) setPrimaryName(state->state.station);
        if (onState) onState(state->state);
    } else if (const auto* chat = std::get_if<CrewMessages::Chat>(&message)) {
        receive(chat->message, true);
    } else if (const auto* acknowledgement = std::get_if<CrewMessages::Acknowledge>(&message)) {
        applyAcknowledgement(acknowledgement->messageID, acknowledgement->station);
    } else if (const auto* history = std::get_if<CrewMessages::History>(&message)) {
        // Backfilled chat is neither unread nor urgent news.
        for (const ChatMessage& each : history->messages)
            receive(each, false);
    } else if (const auto* roster = std::get_if<CrewMessages::Roster>(&message)) {
        setStations(roster->stations);
    }
}

void CrewLink::watchdogTick()
{
    setReceiving(
        lastIntervalDate_ && secondsBetween(*lastIntervalDate_, clock_()) < timings_.silenceLimit);
}

// Chat.

void CrewLink::send(
    const QString& text, bool urgent, std::optional<QuickAlert> alert, std::optional<QString> cue)
{
    const QString trimmed = text.trimmed();
    if (role_ == CrewRole::standalone || trimmed.isEmpty()) return;
    ChatMessage message {
        QUuid::createUuid(), stationName_, trimmed, clock_(), urgent, alert, std::move(cue), {}};
    receive(message, false);
    deliver(CrewMessages::Chat {message});
}

void CrewLink::acknowledge(const QUuid& id)
{
    applyAcknowledgement(id, stationName_);
    deliver(CrewMessages::Acknowledge {id, stationName_});
}

void CrewLink::deliver(const CrewMessage& message)
{
    switch (role_) {
    case CrewRole::primary:
        broadcast(message);
        break;
    case CrewRole::secondary:
        // Nothing is queued: without a primary the message stays here.
        if (upstream_) upstream_->send(message);
        break;
    case CrewRole::standalone:
        break;
    }
}

void CrewLink::receive(const ChatMessage& message, bool counting)
{
    if (!CrewChat::insert(messages_, message, std::size_t(chatLimit))) return;
    emit messagesChanged();
    if (!counting || message.sender == stationName_) return;
    if (!isChatVisible_) setUnreadCount(unreadCount_ + 1);
    if (message.isUrgent) {
        ++urgentFlashCount_;
        emit urgentFlashCountChanged();
    }
}

void CrewLink::applyAcknowledgement(const QUuid& id, const QString& station)
{
    if (CrewChat::acknowledge(messages_, id, station)) emit messagesChanged();
}

std::vector<ChatMessage> CrewLink::pendingUrgent() const
{
    return CrewChat::pendingUrgent(messages_, stationName_);
}

void CrewLink::clearMessages()
{
    if (!messages_.empty()) {
        messages_.clear();
        emit messagesChanged();
    }
    setUnreadCount(0);
}

void CrewLink::setChatVisible(bool visible)
{
    if (visible == isChatVisible_) return;
    isChatVisible_ = visible;
    emit isChatVisibleChanged();
    if (visible) setUnreadCount(0);
}

// Plumbing.

void CrewLink::retry(std::chrono::milliseconds after, std::function<void()> action)
{
    retryTimer_.stop();
    retryAction_ = std::move(action);
    retryTimer_.start(after);
}

void CrewLink::discard(CrewConnection* connection)
{
    // It may be inside one of its own calls now.
    connection->onReady = nullptr;
    connection->onMessage = nullptr;
    connection->deleteLater();
}

void CrewLink::setStatus(Status status)
{
    if (status == status_) return;
    status_ = std::move(status);
    emit statusChanged();
}

void CrewLink::setStations(QStringList stations)
{
    if (stations == stations_) return;
    stations_ = std::move(stations);
    emit stationsChanged();
}

void CrewLink::setReceiving(bool receiving)
{
    if (receiving == isReceiving_) return;
    isReceiving_ = receiving;
    emit isReceivingChanged();
}

void CrewLink::setPrimaryName(std::optional<QString> name)
{
    if (name == primaryName_) return;
    primaryName_ = std::move(name);
    emit primaryNameChanged();
}

void CrewLink::setUnreadCount(int count)
{
    if (count == unreadCount_) return;
    unreadCount_ = count;
    emit unreadCountChanged();
}

} // namespace ostrel
