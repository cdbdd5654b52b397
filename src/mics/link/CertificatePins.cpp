#include "mics/link/CertificatePins.h"

#include <QCryptographicHash>

#include "mics/link/MicLog.h"
#include "settings/SettingsStore.h"

namespace ostrel {

QString CertificatePins::keyFor(const QString& host)
{
    return QStringLiteral("ewdxCertificate.") + host;
}

QString CertificatePins::fingerprint(const QByteArray& der)
{
    return QString::fromLatin1(QCryptographicHash::hash(der, QCryptographicHash::Sha256).toHex());
}

std::optional<QString> CertificatePins::pinned(const QString& host) const
{
    if (store_) return store_->text(keyFor(host));
    const auto found = unsaved_.find(host);
    return found == unsaved_.end() ? std::nullopt : std::optional<QString>(*found);
}

bool CertificatePins::accepts(const QString& host, const QByteArray& der)
{
    const QString seen = fingerprint(der);
    const auto pin = pinned(host);
    if (!pin) {
        if (store_)
            store_->write(keyFor(host), seen);
        else
            unsaved_.insert(host, seen);
        return true;
    }
    if (*pin == seen) return true;
    qCWarning(ostrelMics) << "Refused receiver" << host << ": its certificate" << seen
                          << "is not the pinned one";
    return false;
}

void CertificatePins::clear(const QString& host)
{
    if (store_) store_->write(keyFor(host), QVariant());
    unsaved_.remove(host);
}

} // namespace ostrel
