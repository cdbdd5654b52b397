#pragma once

// Where receiver passwords are kept: asynchronous, since a keyring answers over D-Bus.
#include <functional>
#include <optional>

#include <QString>
#include <QUuid>

namespace ostrel {

struct PasswordReading {
    // Absent when none is stored, or the store could not be read.
    std::optional<QString> password;
    // Set when the store could not be reached: the user must know why the receiver is silent.
    std::optional<QString> problem;
};

class PasswordStore {
public:
    using Read = std::function<void(const PasswordReading&)>;
    // With the problem when the store could not be reached.
    using Done = std::function<void(const std::optional<QString>& problem)>;

    virtual ~PasswordStore() = default;
    // Replaces any stored password.
    virtual void setPassword(const QString& password, const QUuid& id, Done done) = 0;
    virtual void password(const QUuid& id, Read read) = 0;
    virtual void deletePassword(const QUuid& id) = 0;
};

} // namespace ostrel
