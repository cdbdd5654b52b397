#pragma once

// Watches the local network's DNS-SD announcements of Dante devices and keeps the roster. It only
// listens: one browser for the Dante routing control service, whose instance name is the device's
// name, and a resolver per device for its TXT record and address. A device counts as lost when
// the daemon withdraws its service, so the delay is that of mDNS expiry, up to about a minute;
// the monitor has no timer of its own for loss. Main thread only.
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include <QObject>
#include <QString>
#include <QTimer>

#include "common/Date.h"
#include "dante/DanteRoster.h"
#include "network/avahi/DnsSdBrowser.h"
#include "network/avahi/DnsSdClient.h"

namespace ostrel {

class DanteMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(bool hasProblem READ hasProblem NOTIFY problemChanged)

public:
    using Clock = std::function<Date()>;

    struct Timings {
        // After the daemon refused or ended the browse.
        std::chrono::milliseconds restartDelay {5000};
        // Between attempts to reach a daemon without a system bus.
        std::chrono::milliseconds clientRetryDelay {DnsSdClient::defaultRetryDelay};
    };

    static constexpr const char* serviceType = "_netaudio-arc._udp";
    static constexpr const char* domain = "local";

    explicit DanteMonitor(QObject* parent = nullptr);
    DanteMonitor(Timings timings, Clock clock, QObject* parent = nullptr);
    ~DanteMonitor() override;

    void setEnabled(bool enabled);
    void start();
    // The roster is kept as it stands: a device that goes while monitoring is off is not reported.
    void stop();
    // Behind "Remove Offline Devices".
    void removeOfflineDevices();
    // The demo's sample roster, or the primary's on a secondary.
    void simulate(const DanteRoster& roster);

    bool isRunning() const { return isRunning_; }
    const DanteRoster& roster() const { return roster_; }
    const std::vector<DanteDevice>& devices() const { return devices_; }
    std::vector<DanteDevice> offlineDevices() const;
    const std::vector<DanteEvent>& events() const { return roster_.events(); }
    // Why no device can be seen, in words for the operator; empty while all is well.
    QString problem() const { return problem_; }
    bool hasProblem() const { return !problem_.isEmpty(); }

    // For tests: the browser while running, and how many have been made.
    const DnsSdBrowser* browser() const { return browser_.get(); }
    int browsersMade() const { return browsersMade_; }

    static QString problemText(const QString& daemonError);

signals:
    void isRunningChanged();
    // Once per event-loop turn in which the roster changed.
    void rosterChanged();
    void problemChanged();

private:
    void found(const QString& name, const DanteAdvertisement::Txt& txt,
        const std::optional<QString>& address);
    void lost(const QString& name);
    void browserFailed();
    void updateProblem();
    void noteRosterChange();
    void publishRoster();
    Date now() const;

    Timings timings_;
    Clock clock_;
    DanteRoster roster_;
    std::vector<DanteDevice> devices_;
    bool isRunning_ = false;
    QString problem_;
    DnsSdClient client_;
    std::unique_ptr<DnsSdBrowser> browser_;
    int browsersMade_ = 0;
    QTimer restart_;
    bool changePending_ = false;
};

} // namespace ostrel
