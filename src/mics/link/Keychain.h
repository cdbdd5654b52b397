#pragma once

// Receiver passwords in the desktop's Secret Service through QtKeychain: one item per EW-DX
// receiver, service "com.dunmere.ostrel.ewdx", account the receiver's id. Never the insecure
// fallback, which on some desktops writes the secret in clear to a file.
#include <QObject>

#include "mics/link/PasswordStore.h"

namespace ostrel {

class Keychain : public QObject, public PasswordStore {
    Q_OBJECT

public:
    static constexpr const char* service = "com.dunmere.ostrel.ewdx";

    explicit Keychain(QObject* parent = nullptr);

    void setPassword(const QString& password, const QUuid& id, Done done) override;
    void password(const QUuid& id, Read read) override;
    void deletePassword(const QUuid& id) override;

    // The problem text for a keyring that could not be reached.
    static QString unreachableText(const QString& reason);
};

} // namespace ostrel
