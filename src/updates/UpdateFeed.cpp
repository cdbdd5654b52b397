#include "updates/UpdateFeed.h"

#include <QUrl>

namespace ostrel::UpdateFeed {

namespace {

bool isExampleHost(const QString& host)
{
    // The names set aside for documentation, and anything below them.
    for (const char* reserved : {"example.com", "example.org", "example.net", "example"}) {
        const QString name = QString::fromLatin1(reserved);
        if (host == name || host.endsWith(u'.' + name)) return true;
    }
    return false;
}

} // namespace

bool isConfigured(const QString& address)
{
    const QString trimmed = address.trimmed();
    if (trimmed.isEmpty()) return false;
    const QUrl url(trimmed, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty()) return false;
    if (url.scheme() != u"https" && url.scheme() != u"http") return false;
    const QUrl placeholderUrl(QString::fromLatin1(placeholder));
    return !(isExampleHost(url.host().toLower()) && url.path() == placeholderUrl.path());
}

} // namespace ostrel::UpdateFeed
