#pragma once

// Downloads an update feed and reads it. One download at a time; a new one replaces the old.
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <vector>

#include "updates/AppcastItem.h"

class QNetworkReply;

namespace ostrel {

class AppcastFetcher : public QObject {
    Q_OBJECT

public:
    explicit AppcastFetcher(
        std::chrono::milliseconds timeout = std::chrono::seconds(20), QObject* parent = nullptr);
    ~AppcastFetcher() override;

    void fetch(const QUrl& feed);
    void cancel();
    bool isFetching() const { return !reply_.isNull(); }

signals:
    void fetched(const std::vector<ostrel::AppcastItem>& items);
    // A sentence for the user: what went wrong, in plain words.
    void failed(const QString& message);

private:
    void finish();
    void fail(const QString& message);

    QNetworkAccessManager network_;
    QPointer<QNetworkReply> reply_;
    QTimer timeout_;
};

} // namespace ostrel
