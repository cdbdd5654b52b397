#pragma once

// The station's link to QLab: owns the client, takes the QLab settings to it and hands on every
// change of the running cues with its date. Main thread only.
#include <functional>
#include <vector>

#include <QObject>

#include "qlab/QLabCue.h"
#include "qlab/QLabSettings.h"
#include "qlab/client/QLabClient.h"

namespace ostrel {

class QLabLink : public QObject {
    Q_OBJECT

public:
    using Clock = QLabClient::Clock;

    QLabLink(QLabSettings& settings, QLabClient::Timings timings, Clock clock,
        QObject* parent = nullptr);

    // Applies the settings and follows them from then on.
    void start();
    // Takes the settings to the client: the host trimmed of spaces and tabs, the port clamped to
    // what a TCP port can be.
    void applySettings();

    // A crew secondary's own inputs stay off whatever the settings say; the settings are read
    // again when it stops being one.
    void setSuspended(bool suspended) { isSuspended_ = suspended; }
    bool isSuspended() const { return isSuspended_; }
    QLabClient& client() { return client_; }
    const QLabClient& client() const { return client_; }
    // How often the settings have been applied, for tests.
    int applyCount() const { return applies_; }

    std::function<void(const std::vector<QLabCue>& cues, Date at)> onRunningCuesChanged;

    static QString trimmedHost(const QString& host);
    static quint16 clampedPort(qint64 port);

private:
    QLabSettings& settings_;
    Clock clock_;
    QLabClient client_;
    bool isFollowing_ = false;
    bool isSuspended_ = false;
    int applies_ = 0;
};

} // namespace ostrel
