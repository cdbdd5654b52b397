#pragma once

// The station's connection to the DNS-SD daemon (Avahi over the system bus). It survives the
// daemon: made so that it waits for a daemon that is not running yet, it reconnects when one that
// stopped comes back, and without a system bus it tries again after `retryDelay`. Browsers and
// publishers made over it follow its state. Main thread only.
#include <avahi-client/client.h>

#include <chrono>

#include <QObject>
#include <QString>
#include <QTimer>

namespace ostrel {

class DnsSdClient : public QObject {
    Q_OBJECT

public:
    enum class State {
        stopped,
        // Waiting for the daemon, or for the system bus.
        unavailable,
        running,
    };
    Q_ENUM(State)

    static constexpr std::chrono::milliseconds defaultRetryDelay {5000};

    explicit DnsSdClient(
        std::chrono::milliseconds retryDelay = defaultRetryDelay, QObject* parent = nullptr);
    ~DnsSdClient() override;

    void start();
    void stop();

    State state() const { return state_; }
    // Browsing works.
    bool isRunning() const { return state_ == State::running; }
    // The daemon has settled its own host name: the time to announce services.
    bool canPublish() const { return isRunning() && serverSettled_; }
    // Why the daemon can't be used, in Avahi's words ("Daemon not running"); empty while running.
    QString errorText() const { return errorText_; }
    // Valid while running, until `aboutToReset`.
    AvahiClient* client() const { return client_; }

signals:
    void stateChanged();
    // The client and everything made over it are about to be freed: drop every pointer to them.
    void aboutToReset();

private:
    static void clientCallback(AvahiClient* client, AvahiClientState state, void* userdata);
    void connectToDaemon();
    void freeClient();
    void reconnectLater();
    void setState(State state, const QString& errorText, bool serverSettled = false);

    std::chrono::milliseconds retryDelay_;
    AvahiClient* client_ = nullptr;
    State state_ = State::stopped;
    bool serverSettled_ = false;
    QString errorText_;
    QTimer retry_;
};

} // namespace ostrel
