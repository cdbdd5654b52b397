#pragma once

// Where QLab is and which of its workspaces to follow, and the frame rate assumed for a Timecode
// cue that does not tell its own.
#include <QString>

#include "qlab/TimecodeRate.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class QLabSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString host READ host WRITE setHost NOTIFY hostChanged)
    Q_PROPERTY(qint64 port READ port WRITE setPort NOTIFY portChanged)
    Q_PROPERTY(QString passcode READ passcode WRITE setPasscode NOTIFY passcodeChanged)
    Q_PROPERTY(QString workspace READ workspace WRITE setWorkspace NOTIFY workspaceChanged)

public:
    static const Setting<bool> enabledKey;
    static const Setting<QString> hostKey;
    static const Setting<qint64> portKey;
    static const Setting<QString> passcodeKey;
    // Part of a workspace's name; empty takes the first open workspace.
    static const Setting<QString> workspaceKey;
    static const Setting<TimecodeRate> timecodeFallbackRateKey;

    explicit QLabSettings(SettingsStore& store, QObject* parent = nullptr);

    bool enabled() const { return enabled_; }
    void setEnabled(bool value);
    QString host() const { return host_; }
    void setHost(const QString& value);
    // Stored as typed; the link clamps it to a TCP port.
    qint64 port() const { return port_; }
    void setPort(qint64 value);
    QString passcode() const { return passcode_; }
    void setPasscode(const QString& value);
    QString workspace() const { return workspace_; }
    void setWorkspace(const QString& value);
    TimecodeRate timecodeFallbackRate() const { return timecodeFallbackRate_; }
    void setTimecodeFallbackRate(TimecodeRate value);

signals:
    void enabledChanged();
    void hostChanged();
    void portChanged();
    void passcodeChanged();
    void workspaceChanged();
    void timecodeFallbackRateChanged();

private:
    bool enabled_;
    QString host_;
    qint64 port_;
    QString passcode_;
    QString workspace_;
    TimecodeRate timecodeFallbackRate_;
};

} // namespace ostrel
