#pragma once

// Whether this build can look for a newer release, and the look itself: the feed is read, the
// newest release compared with this one, and the user offered its download page. Nothing is
// ever installed. A build without a feed, a demo or a test host has no updater at all rather
// than one that fails.
#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <memory>

#include "common/Date.h"
#include "updates/AppcastItem.h"
#include "updates/UpdateSettings.h"

namespace ostrel {

class AppcastFetcher;

// The waits of the update check; tests shorten them.
struct AppUpdaterTimings {
    std::chrono::milliseconds firstAutomaticCheck = std::chrono::minutes(1);
    std::chrono::milliseconds automaticInterval = std::chrono::hours(24);
    std::chrono::milliseconds timeout = std::chrono::seconds(20);
};

class AppUpdater : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isAvailable READ isAvailable CONSTANT)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(bool checksAutomatically READ checksAutomatically WRITE setChecksAutomatically NOTIFY
            checksAutomaticallyChanged)
    Q_PROPERTY(bool isPresenting READ isPresenting NOTIFY resultChanged)
    Q_PROPERTY(bool hasUpdate READ hasUpdate NOTIFY resultChanged)
    Q_PROPERTY(QString title READ title NOTIFY resultChanged)
    Q_PROPERTY(QString detail READ detail NOTIFY resultChanged)
    Q_PROPERTY(QString downloadPage READ downloadPage NOTIFY resultChanged)
    Q_PROPERTY(QString releaseNotes READ releaseNotes NOTIFY resultChanged)

public:
    using Timings = AppUpdaterTimings;

    // The feed this build was made with (a build option); the placeholder when none was set.
    static QString builtFeed();
    // This build's version, compared with the feed's.
    static QString builtVersion();
    static bool feedIsConfigured();

    // `enabled` is true only for a live station; the feed and version are the build's unless a
    // test gives others.
    AppUpdater(bool enabled, UpdateSettings& settings, QString feed = builtFeed(),
        QString currentVersion = builtVersion(), Timings timings = {}, QObject* parent = nullptr);
    ~AppUpdater() override;

    bool isAvailable() const { return fetcher_ != nullptr; }
    const QString& currentVersion() const { return currentVersion_; }
    bool canCheckForUpdates() const;
    bool checksAutomatically() const;
    void setChecksAutomatically(bool value);

    // A check the user asked for: its outcome is presented whatever it is.
    Q_INVOKABLE void checkForUpdates();
    Q_INVOKABLE void dismiss();

    bool isPresenting() const { return presenting_; }
    bool hasUpdate() const { return update_.has_value(); }
    const QString& title() const { return title_; }
    const QString& detail() const { return detail_; }
    QString downloadPage() const { return update_ ? update_->downloadPage : QString(); }
    QString releaseNotes() const { return update_ ? update_->releaseNotes : QString(); }

signals:
    void canCheckForUpdatesChanged();
    void checksAutomaticallyChanged();
    void resultChanged();

private:
    void begin(bool asked);
    void found(const std::vector<AppcastItem>& items);
    void failed(const QString& message);
    void present(QString title, QString detail, std::optional<AppcastItem> update);
    void schedule();

    UpdateSettings& settings_;
    QString feed_;
    QString currentVersion_;
    Timings timings_;
    std::unique_ptr<AppcastFetcher> fetcher_;
    QTimer automatic_;
    std::optional<Date> lastAttempt_;
    bool checking_ = false;
    bool asked_ = false;
    bool presenting_ = false;
    QString title_;
    QString detail_;
    std::optional<AppcastItem> update_;
};

} // namespace ostrel
