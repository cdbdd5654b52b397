#pragma once

// The owner of radio mic monitoring: keeps the user's receivers and their passwords, runs one
// link per receiver while enabled, feeds the roster and publishes the issues and mic names, each
// only when it really changed. Main thread only.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include "mics/MicIssue.h"
#include "mics/MicReceiver.h"
#include "mics/MicRoster.h"
#include "mics/link/CertificatePins.h"
#include "mics/link/EWDXReceiverClient.h"
#include "mics/link/G4ReceiverClient.h"
#include "mics/link/PasswordStore.h"

namespace ostrel {

class SettingsStore;

class MicMonitor : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<Date()>;

    struct Timings {
        int tickerMs = 1000; // hides held issues when no report comes
        G4ReceiverClient::Timings g4;
        EWDXReceiverClient::Timings ewdx;
    };

    static constexpr const char* receiversKey = "micReceivers";
    static const QString missingPasswordText;

    // Without a store nothing is loaded or saved, and pins are kept in memory.
    MicMonitor(SettingsStore* store, PasswordStore& passwords, Timings timings, Clock clock,
        QObject* parent = nullptr);
    ~MicMonitor() override;

    const std::vector<MicIssue>& issues() const { return issues_; }
    const std::vector<MicReceiver>& receivers() const { return receivers_; }
    const QStringList& channelNames() const { return channelNames_; }
    const std::map<QUuid, QString>& problems() const { return problems_; }
    QString problem(const QUuid& id) const;
    bool warnsAboutLowBattery() const { return warnsAboutLowBattery_; }
    void setWarnsAboutLowBattery(bool value);
    bool isEnabled() const { return isEnabled_; }

    void setEnabled(bool value);
    // An empty password counts as given: it is stored, and the link then asks for one.
    void addReceiver(const MicReceiver& receiver, const std::optional<QString>& password);
    void removeReceiver(const QUuid& id);
    // Issues and names that did not come from receivers (demo, crew mirror); turns monitoring off.
    void simulate(const std::vector<MicIssue>& issues, const std::optional<QStringList>& names);

    // For tests: the links now running.
    const G4ReceiverClient* g4Client(const QUuid& id) const;
    const EWDXReceiverClient* ewdxClient(const QUuid& id) const;
    int clientStarts() const { return clientStarts_; }
    CertificatePins& pins() { return pins_; }

signals:
    void issuesChanged();
    void receiversChanged();
    void channelNamesChanged();
    void problemsChanged();
    void warnsAboutLowBatteryChanged();

private:
    void load();
    void save();
    void startClient(const MicReceiver& receiver);
    void startEWDX(const MicReceiver& receiver, const PasswordReading& reading);
    void stopClient(const QUuid& id);
    void setProblem(const QUuid& id, const std::optional<QString>& problem);
    void ingest(const MicChannelReport& report);
    void reachabilityChanged(bool reachable, const QString& name, const QUuid& id);
    void publish();
    bool hasReceiver(const QUuid& id) const;

    SettingsStore* store_;
    PasswordStore& passwords_;
    Timings timings_;
    Clock clock_;
    CertificatePins pins_;
    std::vector<MicIssue> issues_;
    std::vector<MicReceiver> receivers_;
    QStringList channelNames_;
    std::map<QUuid, QString> problems_;
    // Passwords the keyring would not take: a later read finds none, and must not say "enter one".
    std::map<QUuid, QString> unsavedPasswords_;
    bool warnsAboutLowBattery_ = true;
    MicRoster roster_;
    std::map<QUuid, std::unique_ptr<G4ReceiverClient>> g4Clients_;
    std::map<QUuid, std::unique_ptr<EWDXReceiverClient>> ewdxClients_;
    QTimer ticker_;
    bool isEnabled_ = false;
    // Bumped at each enabling and disabling, so a password read that answers late is ignored.
    int session_ = 0;
    int clientStarts_ = 0;
};

} // namespace ostrel
