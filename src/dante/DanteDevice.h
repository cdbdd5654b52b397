#pragma once

// One Dante device as the station knows it from its announcements: who it is, what it said about
// itself, its address once resolved, and whether it is announced now.
#include <optional>

#include <QJsonObject>
#include <QString>

#include "common/Date.h"

namespace ostrel {

struct DanteDevice {
    // The announced service name; the device's identity.
    QString id;
    std::optional<QString> model;
    std::optional<QString> manufacturer;
    std::optional<QString> firmware;
    std::optional<QString> address;
    bool isOnline = true;
    Date firstSeen;
    // When `isOnline` last changed, or when first seen.
    Date lastChange;

    const QString& name() const { return id; }

    // Dates as seconds since 2001-01-01 UTC, as the crew carries them; absent details left out.
    QJsonObject toJson() const;
    // Nothing when a required key is missing or of the wrong type.
    static std::optional<DanteDevice> fromJson(const QJsonObject& json);

    bool operator==(const DanteDevice&) const = default;
};

} // namespace ostrel
