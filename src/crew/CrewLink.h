#pragma once

// Makes the station a crew's primary, one of its secondaries, or neither. A primary announces
// itself over DNS-SD, streams levels and mirrored state to every secondary and relays chat; a
// secondary browses for a primary, shows what it receives and keeps trying when it goes away.
// Chat runs through the primary as hub. Main thread only.
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUuid>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"
#include "network/ChatMessage.h"
#include "network/CrewRole.h"
#include "network/MirrorState.h"
#include "network/QuickAlert.h"

class QTcpServer;

namespace ostrel {

class CrewConnection;
class DnsSdBrowser;
class DnsSdClient;
class DnsSdPublisher;
struct DnsSdService;

class CrewLink : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString role READ roleText NOTIFY roleChanged)
    Q_PROPERTY(bool isInCrew READ isInCrew NOTIFY roleChanged)
    Q_PROPERTY(StatusKind statusKind READ statusKind NOTIFY statusChanged)
    Q_PROPERTY(int statusSecondaries READ statusSecondaries NOTIFY statusChanged)
    Q_PROPERTY(QString statusPeer READ statusPeer NOTIFY statusChanged)
    Q_PROPERTY(QString stationName READ stationName NOTIFY stationNameChanged)
    Q_PROPERTY(QStringList stations READ stations NOTIFY stationsChanged)
    Q_PROPERTY(
        QStringList availablePrimaries READ availablePrimaries NOTIFY availablePrimariesChanged)
    Q_PROPERTY(bool isReceiving READ isReceiving NOTIFY isReceivingChanged)
    Q_PROPERTY(QString primaryName READ primaryNameText NOTIFY primaryNameChanged)
    Q_PROPERTY(int unreadCount READ unreadCount NOTIFY unreadCountChanged)
    Q_PROPERTY(int urgentFlashCount READ urgentFlashCount NOTIFY urgentFlashCountChanged)
    Q_PROPERTY(
        bool isChatVisible READ isChatVisible WRITE setChatVisible NOTIFY isChatVisibleChanged)

public:
    enum class StatusKind { sharing, connecting, connected, off, searching };
    Q_ENUM(StatusKind)

    struct Status {
        StatusKind kind = StatusKind::off;
        // `sharing`: the named secondaries.
        int secondaries = 0;
        // `connecting` and `connected`: the primary's name.
        QString peer;
        bool operator==(const Status&) const = default;
    };

    // The described waits; tests shorten them.
    struct Timings {
        std::chrono::milliseconds retryAfterFailure {3000};
        std::chrono::milliseconds retryAfterLoss {2000};
        std::chrono::milliseconds watchdogTick {500};
        std::chrono::milliseconds dnsSdRetry {5000}; // the Avahi client's, while no daemon
        double silenceLimit = 2.0; // seconds without an interval before the readings aren't live
    };

    static constexpr const char* serviceType = "_ostrel._tcp";
    static constexpr int historyLimit = 100;
    static constexpr int chatLimit = 500;

    // `clock` gives every date the link takes. The link has an Avahi client of its own, started
    // only while it is in a crew.
    explicit CrewLink(
        Timings timings = {},
        std::function<Date()> clock = [] { return std::chrono::system_clock::now(); },
        QObject* parent = nullptr);
    ~CrewLink() override;

    // Idempotent; called whenever the crew settings change.
    void configure(CrewRole role, const QString& stationName, const QString& preferredPrimary);
    void stop();
    // Primary only, and only while a secondary is attached.
    void share(const MeasurementInterval& interval);
    void share(const MirrorState& state);
    void send(const QString& text, bool urgent, std::optional<QuickAlert> alert,
        std::optional<QString> cue);
    void acknowledge(const QUuid& id);
    void clearMessages();

    CrewRole role() const { return role_; }
    bool isInCrew() const { return role_ != CrewRole::standalone; }
    const Status& status() const { return status_; }
    StatusKind statusKind() const { return status_.kind; }
    int statusSecondaries() const { return status_.secondaries; }
    QString statusPeer() const { return status_.peer; }
    const QString& stationName() const { return stationName_; }
    const QStringList& stations() const { return stations_; }
    const QStringList& availablePrimaries() const { return availablePrimaries_; }
    bool isReceiving() const { return isReceiving_; }
    const std::optional<QString>& primaryName() const { return primaryName_; }
    // Oldest first, by the authors' dates.
    const std::vector<ChatMessage>& messages() const { return messages_; }
    int unreadCount() const { return unreadCount_; }
    // Rises by one per urgent arrival and never falls; views watch it for change.
    int urgentFlashCount() const { return urgentFlashCount_; }
    bool isChatVisible() const { return isChatVisible_; }
    void setChatVisible(bool visible);
    // Urgent messages of others this station has not acknowledged yet, in `messages` order.
    std::vector<ChatMessage> pendingUrgent() const;
    // The port the primary listens on; 0 when not sharing.
    quint16 listeningPort() const;

    std::function<void(const MeasurementInterval&)> onInterval;
    std::function<void(const MirrorState&)> onState;

signals:
    void roleChanged();
    void statusChanged();
    void stationNameChanged();
    void stationsChanged();
    void availablePrimariesChanged();
    void isReceivingChanged();
    void primaryNameChanged();
    void messagesChanged();
    void unreadCountChanged();
    void urgentFlashCountChanged();
    void isChatVisibleChanged();

private:
    QString roleText() const;
    QString primaryNameText() const { return primaryName_.value_or(QString()); }

    // The rest is the implementation's: listener, publisher, browser, connections, watchdog
    // and retry timers, and the handlers of each side.

    std::unique_ptr<DnsSdClient> dnsSd_;
    Timings timings_;
    std::function<Date()> clock_;
    CrewRole role_ = CrewRole::standalone;
    Status status_;
    QString stationName_;
    QStringList stations_;
    QStringList availablePrimaries_;
    bool isReceiving_ = false;
    std::optional<QString> primaryName_;
    std::vector<ChatMessage> messages_;
    int unreadCount_ = 0;
    int urgentFlashCount_ = 0;
    bool isChatVisible_ = false;
    QString preferredPrimary_;
};

} // namespace ostrel
