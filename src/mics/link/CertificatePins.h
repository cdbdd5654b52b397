#pragma once

// Trust on first use for receivers' self-signed certificates: the first certificate a host shows
// is pinned by the SHA-256 of its DER bytes under "ewdxCertificate." + host, and a host that later
// shows another is refused until the pin is cleared by hand.
#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

namespace ostrel {

class SettingsStore;

class CertificatePins {
public:
    // Without a store (previews, an inert station) pins live as long as this object.
    explicit CertificatePins(SettingsStore* store) : store_(store) { }

    static QString keyFor(const QString& host);
    // Lower-case hexadecimal of the SHA-256 of the DER bytes, without separators.
    static QString fingerprint(const QByteArray& der);

    // Pins an unknown host's certificate; true when the certificate is the pinned one.
    bool accepts(const QString& host, const QByteArray& der);
    void clear(const QString& host);

private:
    std::optional<QString> pinned(const QString& host) const;

    SettingsStore* store_;
    QHash<QString, QString> unsaved_;
};

} // namespace ostrel
