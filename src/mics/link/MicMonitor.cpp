#include "mics/link/MicMonitor.h"

#include <QPointer>

#include "settings/SettingsStore.h"

namespace ostrel {

const QString MicMonitor::missingPasswordText
    = QStringLiteral("Enter the 3rd Party Access password.");

MicMonitor::MicMonitor(
    SettingsStore* store, PasswordStore& passwords, Timings timings, Clock clock, QObject* parent)
    : QObject(parent),
      store_(store),
      passwords_(passwords),
      timings_(timings),
      clock_(std::move(clock)),
      pins_(store)
{
    ticker_.setInterval(timings_.tickerMs);
    connect(&ticker_, &QTimer::timeout, this, &MicMonitor::publish);
    load();
}

MicMonitor::~MicMonitor() = default;

void MicMonitor::load()
{
    if (!store_) return;
    const auto text = store_->text(QString::fromLatin1(receiversKey));
    if (!text) return;
    // A list that can't be read as a whole is no list; nothing is said.
    receivers_ = MicReceiver::decodeList(text->toUtf8()).value_or(std::vector<MicReceiver> {});
}

void MicMonitor::save()
{
    if (!store_) return;
    store_->write(
        QString::fromLatin1(receiversKey), QString::fromUtf8(MicReceiver::encodeList(receivers_)));
}

QString MicMonitor::problem(const QUuid& id) const
{
    const auto found = problems_.find(id);
    return found == problems_.end() ? QString() : found->second;
}

void MicMonitor::setWarnsAboutLowBattery(bool value)
{
    if (value != warnsAboutLowBattery_) {
        warnsAboutLowBattery_ = value;
        emit warnsAboutLowBatteryChanged();
    }
    roster_.warnsAboutLowBattery = value;
    roster_.refresh(clock_());
    publish();
}

void MicMonitor::setEnabled(bool value)
{
    if (value == isEnabled_) return;
    isEnabled_ = value;
    ++session_;
    if (value) {
        for (const MicReceiver& receiver : receivers_)
            startClient(receiver);
        ticker_.start();
        return;
    }
    for (const MicReceiver& receiver : receivers_)
        stopClient(receiver.id);
    ticker_.stop();
    // A pack that stays off after re-enabling is again no dropout.
    roster_ = MicRoster {};
    roster_.warnsAboutLowBattery = warnsAboutLowBattery_;
    publish();
}

void MicMonitor::startClient(const MicReceiver& receiver)
{
    if (receiver.kind == MicReceiverKind::g4) {
        auto client = std::make_unique<G4ReceiverClient>(receiver, timings_.g4, clock_);
        client->onReport = [this](const MicChannelReport& report) { ingest(report); };
        const QUuid id = receiver.id;
        client->onReachabilityChange = [this, id](bool reachable, const QString& name) {
            reachabilityChanged(reachable, name, id);
        };
        G4ReceiverClient* started = client.get();
        g4Clients_[id] = std::move(client);
        ++clientStarts_;
        started->start();
        return;
    }
    const int session = session_;
    QPointer<MicMonitor> self(this);
    passwords_.password(receiver.id, [self, session, receiver](const PasswordReading& reading) {
        if (!self || session != self->session_ || !self->isEnabled_) return;
        if (!self->hasReceiver(receiver.id) || self->ewdxClients_.count(receiver.id)) return;
        self->startEWDX(receiver, reading);
    });
}

void MicMonitor::startEWDX(const MicReceiver& receiver, const PasswordReading& reading)
{
    if (reading.problem) return setProblem(receiver.id, reading.problem);
    if (!reading.password || reading.password->isEmpty()) {
        const auto unsaved = unsavedPasswords_.find(receiver.id);
        return setProblem(receiver.id,
            unsaved != unsavedPasswords_.end() ? unsaved->second : missingPasswordText);
    }
    auto client
        = std::make_unique<EWDXReceiverClient>(receiver, *reading.password, pins_, timings_.ewdx);
    const QUuid id = receiver.id;
    client->onReport = [this](const MicChannelReport& report) { ingest(report); };
    client->onReachabilityChange = [this, id](bool reachable, const QString& name) {
        reachabilityChanged(reachable, name, id);
    };
    client->onProblem
        = [this, id](const std::optional<QString>& problem) { setProblem(id, problem); };
    EWDXReceiverClient* started = client.get();
    ewdxClients_[id] = std::move(client);
    ++clientStarts_;
    started->start();
}

void MicMonitor::stopClient(const QUuid& id)
{
    // Links are deleted later: this may run inside one of their own callbacks.
    if (auto found = g4Clients_.find(id); found != g4Clients_.end()) {
        found->second->stop();
        found->second->onReport = nullptr;
        found->second->onReachabilityChange = nullptr;
        found->second.release()->deleteLater();
        g4Clients_.erase(found);
    }
    if (auto found = ewdxClients_.find(id); found != ewdxClients_.end()) {
        found->second->stop();
        found->second->onReport = nullptr;
        found->second->onReachabilityChange = nullptr;
        found->second->onProblem = nullptr;
        found->second.release()->deleteLater();
        ewdxClients_.erase(found);
    }
}

void MicMonitor::addReceiver(const MicReceiver& receiver, const std::optional<QString>& password)
{
    receivers_.push_back(receiver);
    save();
    emit receiversChanged();
    if (password && receiver.kind == MicReceiverKind::ewdx) {
        // The link reads the password back, so it starts once the keyring has it.
        const int session = session_;
        QPointer<MicMonitor> self(this);
        passwords_.setPassword(*password, receiver.id,
            [self, session, receiver](const std::optional<QString>& problem) {
                if (!self || !self->hasReceiver(receiver.id)) return;
                // Without its password the link can't start; the user must know why.
                if (problem) {
                    self->unsavedPasswords_[receiver.id] = *problem;
                    return self->setProblem(receiver.id, problem);
                }
                self->unsavedPasswords_.erase(receiver.id);
                if (session == self->session_ && self->isEnabled_) self->startClient(receiver);
            });
        return;
    }
    if (isEnabled_) startClient(receiver);
}

void MicMonitor::removeReceiver(const QUuid& id)
{
    stopClient(id);
    std::erase_if(receivers_, [&](const MicReceiver& receiver) { return receiver.id == id; });
    passwords_.deletePassword(id);
    unsavedPasswords_.erase(id);
    setProblem(id, std::nullopt);
    roster_.removeReceiver(micReceiverKey(id), clock_());
    save();
    emit receiversChanged();
    publish();
}

void MicMonitor::simulate(
    const std::vector<MicIssue>& issues, const std::optional<QStringList>& names)
{
    setEnabled(false);
    if (issues != issues_) {
        issues_ = issues;
        emit issuesChanged();
    }
    if (names && *names != channelNames_) {
        channelNames_ = *names;
        emit channelNamesChanged();
    }
}

const G4ReceiverClient* MicMonitor::g4Client(const QUuid& id) const
{
    const auto found = g4Clients_.find(id);
    return found == g4Clients_.end() ? nullptr : found->second.get();
}

const EWDXReceiverClient* MicMonitor::ewdxClient(const QUuid& id) const
{
    const auto found = ewdxClients_.find(id);
    return found == ewdxClients_.end() ? nullptr : found->second.get();
}

bool MicMonitor::hasReceiver(const QUuid& id) const
{
    return std::any_of(receivers_.begin(), receivers_.end(),
        [&](const MicReceiver& receiver) { return receiver.id == id; });
}

void MicMonitor::setProblem(const QUuid& id, const std::optional<QString>& problem)
{
    const auto found = problems_.find(id);
    if (!problem) {
        if (found == problems_.end()) return;
        problems_.erase(found);
    } else {
        if (found != problems_.end() && found->second == *problem) return;
        problems_[id] = *problem;
    }
    emit problemsChanged();
}

void MicMonitor::ingest(const MicChannelReport& report)
{
    roster_.update(report, clock_());
    publish();
}

void MicMonitor::reachabilityChanged(bool reachable, const QString& name, const QUuid& id)
{
    const QString key = micReceiverKey(id);
    if (reachable)
        roster_.receiverCameBack(key, clock_());
    else
        roster_.receiverWentOffline(key, name, clock_());
    publish();
}

void MicMonitor::publish()
{
    const Date now = clock_();
    auto issues = roster_.issues(now);
    if (issues != issues_) {
        issues_ = std::move(issues);
        emit issuesChanged();
    }
    auto names = roster_.channelNames();
    if (names != channelNames_) {
        channelNames_ = std::move(names);
        emit channelNamesChanged();
    }
}

} // namespace ostrel
