#pragma once

// Which input the meter listens to: a device, or the system's default, and one of its channels.
#include <QString>

#include "settings/SettingsGroup.h"

namespace ostrel {

class InputSettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(QString deviceUID READ deviceUID WRITE setDeviceUID NOTIFY deviceUIDChanged)
    Q_PROPERTY(qint64 channel READ channel WRITE setChannel NOTIFY channelChanged)

public:
    // Empty means the system's default input.
    static const Setting<QString> deviceUIDKey;
    static const Setting<qint64> channelKey;

    explicit InputSettings(SettingsStore& store, QObject* parent = nullptr);

    QString deviceUID() const { return deviceUID_; }
    void setDeviceUID(const QString& value);
    qint64 channel() const { return channel_; }
    void setChannel(qint64 value);

signals:
    void deviceUIDChanged();
    void channelChanged();

private:
    QString deviceUID_;
    qint64 channel_;
};

} // namespace ostrel
