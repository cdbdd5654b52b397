#include "station/AppUpdater.h"

#include <QUrl>
#include <algorithm>

#include "updates/Appcast.h"
#include "updates/UpdateFeed.h"
#include "updates/client/AppcastFetcher.h"

#ifndef OSTREL_UPDATE_FEED
#define OSTREL_UPDATE_FEED ""
#endif
#ifndef OSTREL_VERSION
#define OSTREL_VERSION "0"
#endif

namespace ostrel {

QString AppUpdater::builtFeed()
{
    return QStringLiteral(OSTREL_UPDATE_FEED);
}

QString AppUpdater::builtVersion()
{
    return QStringLiteral(OSTREL_VERSION);
}

bool AppUpdater::feedIsConfigured()
{
    return UpdateFeed::isConfigured(builtFeed());
}

AppUpdater::AppUpdater(bool enabled, UpdateSettings& settings, QString feed, QString currentVersion,
    Timings timings, QObject* parent)
    : QObject(parent),
      settings_(settings),
      feed_(std::move(feed)),
      currentVersion_(std::move(currentVersion)),
      timings_(timings)
{
    automatic_.setSingleShot(true);
    if (!enabled || !UpdateFeed::isConfigured(feed_)) return;
    fetcher_ = std::make_unique<AppcastFetcher>(timings_.timeout);
    connect(fetcher_.get(), &AppcastFetcher::fetched, this, &AppUpdater::found);
    connect(fetcher_.get(), &AppcastFetcher::failed, this, &AppUpdater::failed);
    connect(&automatic_, &QTimer::timeout, this, [this] { begin(false); });
    connect(&settings_, &UpdateSettings::checksAutomaticallyChanged, this, [this] {
        schedule();
        emit checksAutomaticallyChanged();
    });
    schedule();
}

AppUpdater::~AppUpdater() = default;

bool AppUpdater::canCheckForUpdates() const
{
    return isAvailable() && !checking_;
}

bool AppUpdater::checksAutomatically() const
{
    return isAvailable() && settings_.checksAutomatically();
}

void AppUpdater::setChecksAutomatically(bool value)
{
    if (isAvailable()) settings_.setChecksAutomatically(value);
}

void AppUpdater::checkForUpdates()
{
    if (!isAvailable()) return;
    // Asking during an automatic check makes that check's outcome the answer.
    asked_ = true;
    if (!checking_) begin(true);
}

void AppUpdater::dismiss()
{
    if (!presenting_) return;
    presenting_ = false;
    emit resultChanged();
}

void AppUpdater::begin(bool asked)
{
    asked_ = asked;
    lastAttempt_ = std::chrono::system_clock::now();
    checking_ = true;
    emit canCheckForUpdatesChanged();
    fetcher_->fetch(QUrl(feed_.trimmed()));
}

void AppUpdater::found(const std::vector<AppcastItem>& items)
{
    checking_ = false;
    settings_.setLastCheck(std::chrono::system_clock::now());
    emit canCheckForUpdatesChanged();
    if (auto newest = Appcast::newest(items, currentVersion_)) {
        const QString detail
            = QStringLiteral("Ostrel Live %1 is now available (you have %2). Open its download "
                             "page to get it; nothing is installed by itself.")
                  .arg(newest->displayVersion, currentVersion_);
        present(QStringLiteral("A new version of Ostrel Live is available"), detail, newest);
    } else if (asked_) {
        present(QStringLiteral("You're up to date"),
            QStringLiteral("Ostrel Live %1 is the newest version available.").arg(currentVersion_),
            std::nullopt);
    }
    schedule();
}

void AppUpdater::failed(const QString& message)
{
    checking_ = false;
    emit canCheckForUpdatesChanged();
    // An automatic check that fails says nothing: it tries again at the next turn.
    if (asked_) present(QStringLiteral("Couldn't check for updates"), message, std::nullopt);
    schedule();
}

void AppUpdater::present(QString title, QString detail, std::optional<AppcastItem> update)
{
    title_ = std::move(title);
    detail_ = std::move(detail);
    update_ = std::move(update);
    presenting_ = true;
    asked_ = false;
    emit resultChanged();
}

void AppUpdater::schedule()
{
    automatic_.stop();
    if (!checksAutomatically() || checking_) return;
    auto wait = timings_.firstAutomaticCheck;
    // A check that failed counts too: a feed that is down is not asked again every minute.
    auto last = settings_.lastCheck();
    if (lastAttempt_ && (!last || *lastAttempt_ > *last)) last = lastAttempt_;
    if (last) {
        const auto due = *last + timings_.automaticInterval;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            due - std::chrono::system_clock::now());
        wait = std::max(wait, left);
    }
    automatic_.start(wait);
}

} // namespace ostrel
