#pragma once

// Watches one EW-DX receiver over its HTTPS control API: reads its identity, opens the event
// stream, subscribes to each channel's warnings and turns events into channel reports. A lost or
// refused connection is retried at a fixed delay for ever. Main thread only.
#include <functional>
#include <optional>

#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include "mics/EWDXProtocol.h"
#include "mics/MicChannelReport.h"
#include "mics/MicReceiver.h"
#include "mics/link/CertificatePins.h"

class QNetworkReply;

namespace ostrel {

class EWDXReceiverClient : public QObject {
    Q_OBJECT

public:
    struct Timings {
        int retryDelayMs = 5000;
        int requestTimeoutMs = 60000;
        int streamTimeoutMs = 15000;
    };

    static const QString passwordRejectedText;
    static const QString noSSCv2Text;
    static const QString invalidAddressText;
    static const QString subscriptionRefusedText;
    static QString httpErrorText(int status);

    EWDXReceiverClient(MicReceiver receiver, QString password, CertificatePins& pins,
        Timings timings, QObject* parent = nullptr);
    ~EWDXReceiverClient() override;

    void start();
    // A stopped client is not started again; the owner makes a new one.
    void stop();

    bool isReachable() const { return isReachable_; }
    QString keyPrefix() const;
    QString displayName() const;
    const EWDXProtocol::ChannelStates& states() const { return states_; }
    // Event lines whose data changed no channel, for the debug log's count.
    qint64 droppedEvents() const { return dropped_; }

    std::function<void(const MicChannelReport&)> onReport;
    std::function<void(bool reachable, const QString& name)> onReachabilityChange;
    std::function<void(const std::optional<QString>& problem)> onProblem;

private:
    enum class Ending { normal, networkError, receiverError };

    QNetworkRequest request(const QString& path, const QByteArray& accept, int timeoutMs) const;
    QNetworkReply* watch(QNetworkReply* reply);
    std::optional<QString> responseProblem(QNetworkReply* reply) const;
    void connectAndListen();
    void readSite();
    void openStream();
    void readStream();
    void handle(const EWDXProtocol::Event& event);
    void subscribe(const QString& sessionUUID, int form);
    void report(qint64 channel);
    void end(Ending ending, const std::optional<QString>& problem = std::nullopt);

    MicReceiver receiver_;
    QString password_;
    CertificatePins& pins_;
    Timings timings_;
    QNetworkAccessManager network_;
    QTimer retryTimer_;
    bool isRunning_ = false;
    bool isConnecting_ = false;
    QPointer<QNetworkReply> current_;
    QPointer<QNetworkReply> stream_;
    QPointer<QNetworkReply> subscription_;
    QByteArray streamBuffer_;
    EWDXProtocol::EventReader events_;
    int channelCount_ = 2;
    EWDXProtocol::ChannelStates states_;
    std::optional<QString> deviceName_;
    bool isReachable_ = false;
    qint64 dropped_ = 0;
};

} // namespace ostrel
