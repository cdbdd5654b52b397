#pragma once

// The platform's preference store as the settings groups see it. An assignment is taken at once,
// but the disk is written at most once per `syncDelay`: a slider dragged across the screen must
// not write a file at every step. Pending writes go to disk when the delay ends, at `flush`, when
// the application quits and when the store goes.
#include <chrono>
#include <optional>

#include <QHash>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QTimer>
#include <QVariant>

namespace ostrel {

class SettingsStore : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultSyncDelay {500};

    explicit SettingsStore(QSettings& settings,
        std::chrono::milliseconds syncDelay = defaultSyncDelay, QObject* parent = nullptr);
    ~SettingsStore() override;

    // The stored text under `key`, counting writes not yet on disk; nothing when the key is
    // missing or holds a list or a map.
    std::optional<QString> text(const QString& key) const;
    // An invalid value removes the key.
    void write(const QString& key, const QVariant& value);
    void flush();

    bool hasPendingWrites() const { return !pending_.isEmpty(); }
    // How many times the disk has been written; for tests.
    int syncCount() const { return syncCount_; }

private:
    QSettings& settings_;
    QHash<QString, QVariant> pending_;
    QTimer syncTimer_;
    int syncCount_ = 0;
};

} // namespace ostrel
