#include "dante/monitor/DanteMonitor.h"

#include <avahi-common/error.h>

#include <QPointer>

#include "dante/DanteAddress.h"
#include "network/DnsSdTxt.h"

namespace ostrel {

DanteMonitor::DanteMonitor(QObject* parent) : DanteMonitor(Timings {}, Clock {}, parent) { }

DanteMonitor::DanteMonitor(Timings timings, Clock clock, QObject* parent)
    : QObject(parent),
      timings_(timings),
      clock_(clock ? std::move(clock) : Clock([] { return std::chrono::system_clock::now(); })),
      client_(timings.clientRetryDelay)
{
    restart_.setSingleShot(true);
    connect(&restart_, &QTimer::timeout, this, &DanteMonitor::start);
    connect(&client_, &DnsSdClient::stateChanged, this, &DanteMonitor::updateProblem);
}

DanteMonitor::~DanteMonitor()
{
    // The browser goes before the client it was made over.
    browser_.reset();
}

void DanteMonitor::setEnabled(bool enabled)
{
    if (enabled)
        start();
    else
        stop();
}

void DanteMonitor::start()
{
    if (browser_) return;
    restart_.stop();
    browser_ = std::make_unique<DnsSdBrowser>(
        client_, QString::fromLatin1(serviceType), QString::fromLatin1(domain));
    ++browsersMade_;
    connect(browser_.get(), &DnsSdBrowser::serviceAdded, this,
        [this](const QString& name) { found(name, {}, std::nullopt); });
    connect(
        browser_.get(), &DnsSdBrowser::serviceResolved, this, [this](const DnsSdService& service) {
            found(service.name, DnsSdTxt::map(service.txt),
                service.address.isEmpty() ? std::nullopt : std::optional(service.address));
        });
    connect(browser_.get(), &DnsSdBrowser::serviceRemoved, this, &DanteMonitor::lost);
    connect(browser_.get(), &DnsSdBrowser::failed, this, &DanteMonitor::browserFailed);
    client_.start();
    browser_->start();
    if (!isRunning_) {
        isRunning_ = true;
        emit isRunningChanged();
    }
    updateProblem();
}

void DanteMonitor::stop()
{
    restart_.stop();
    browser_.reset();
    client_.stop();
    if (isRunning_) {
        isRunning_ = false;
        emit isRunningChanged();
    }
    updateProblem();
}

void DanteMonitor::removeOfflineDevices()
{
    roster_.removeOffline();
    noteRosterChange();
}

void DanteMonitor::simulate(const DanteRoster& roster)
{
    roster_ = roster;
    noteRosterChange();
}

std::vector<DanteDevice> DanteMonitor::offlineDevices() const
{
    std::vector<DanteDevice> offline;
    for (const DanteDevice& device : devices_)
        if (!device.isOnline) offline.push_back(device);
    return offline;
}

QString DanteMonitor::problemText(const QString& daemonError)
{
    if (daemonError == QString::fromUtf8(avahi_strerror(AVAHI_ERR_NO_DAEMON)))
        return QStringLiteral("Dante devices can't be found: the Avahi daemon isn't running.");
    return QStringLiteral("Dante devices can't be found: ") + daemonError + u'.';
}

void DanteMonitor::found(
    const QString& name, const DanteAdvertisement::Txt& txt, const std::optional<QString>& address)
{
    roster_.seen(name, txt, now());
    // One address per device, kept when it comes back.
    const auto device = roster_.devices().find(name);
    if (address && device != roster_.devices().end() && !device->second.address)
        roster_.setAddress(DanteAddress::describe(*address), name);
    noteRosterChange();
}

void DanteMonitor::lost(const QString& name)
{
    roster_.lost(name, now());
    noteRosterChange();
}

void DanteMonitor::browserFailed()
{
    // Not inside the browser's own callback: it is freed by `stop`.
    QPointer<DanteMonitor> self(this);
    QMetaObject::invokeMethod(
        this,
        [self] {
            if (!self) return;
            self->stop();
            self->restart_.start(self->timings_.restartDelay);
        },
        Qt::QueuedConnection);
}

void DanteMonitor::updateProblem()
{
    const QString problem = isRunning_ && client_.state() == DnsSdClient::State::unavailable
        ? problemText(client_.errorText())
        : QString();
    if (problem == problem_) return;
    problem_ = problem;
    emit problemChanged();
}

void DanteMonitor::noteRosterChange()
{
    // Announcements come in bursts; the sorted list and the views follow once per turn.
    if (changePending_) return;
    changePending_ = true;
    QMetaObject::invokeMethod(this, &DanteMonitor::publishRoster, Qt::QueuedConnection);
}

void DanteMonitor::publishRoster()
{
    changePending_ = false;
    devices_ = roster_.sortedDevices();
    emit rosterChanged();
}

Date DanteMonitor::now() const
{
    return clock_();
}

} // namespace ostrel
