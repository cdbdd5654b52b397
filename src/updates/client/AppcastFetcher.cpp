#include "updates/client/AppcastFetcher.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <variant>

#include "updates/Appcast.h"

namespace ostrel {

AppcastFetcher::AppcastFetcher(std::chrono::milliseconds timeout, QObject* parent) : QObject(parent)
{
    timeout_.setSingleShot(true);
    timeout_.setInterval(timeout);
    connect(&timeout_, &QTimer::timeout, this,
        [this] { fail(QStringLiteral("The update server didn't answer in time.")); });
}

AppcastFetcher::~AppcastFetcher()
{
    cancel();
}

void AppcastFetcher::fetch(const QUrl& feed)
{
    cancel();
    QNetworkRequest request(feed);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(5);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Ostrel Live"));
    reply_ = network_.get(request);
    // A feed that keeps on coming is no feed: stop reading once it passes the limit.
    connect(reply_, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64) {
        if (received > Appcast::maximumBytes) fail(QStringLiteral("The update feed is too large."));
    });
    connect(reply_, &QNetworkReply::finished, this, &AppcastFetcher::finish);
    timeout_.start();
}

void AppcastFetcher::cancel()
{
    timeout_.stop();
    if (!reply_) return;
    QNetworkReply* reply = reply_;
    reply_.clear();
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void AppcastFetcher::fail(const QString& message)
{
    cancel();
    emit failed(message);
}

void AppcastFetcher::finish()
{
    if (!reply_) return;
    timeout_.stop();
    QNetworkReply* reply = reply_;
    reply_.clear();
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError && status == 0) {
        emit failed(
            QStringLiteral("The update server can't be reached: %1.").arg(reply->errorString()));
        return;
    }
    if (status < 200 || status >= 300) {
        emit failed(QStringLiteral("The update server answered with error %1.").arg(status));
        return;
    }
    auto parsed = Appcast::parse(reply->readAll());
    if (auto* message = std::get_if<QString>(&parsed)) {
        emit failed(*message);
        return;
    }
    emit fetched(std::get<std::vector<AppcastItem>>(parsed));
}

} // namespace ostrel
