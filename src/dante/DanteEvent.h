#pragma once

// One line of the dropout log: a device went offline or came back.
#include <array>
#include <optional>
#include <string_view>

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include "common/Date.h"

namespace ostrel {

struct DanteEvent {
    enum class Kind { droppedOut, returned };

    QUuid id;
    QString device;
    Kind kind = Kind::droppedOut;
    Date date;

    static std::string_view rawValue(Kind kind) noexcept;
    static std::optional<Kind> kindFromRawValue(std::string_view raw) noexcept;
    static constexpr std::array<Kind, 2> allKinds {Kind::droppedOut, Kind::returned};

    // Dates as seconds since 2001-01-01 UTC, as the crew carries them.
    QJsonObject toJson() const;
    static std::optional<DanteEvent> fromJson(const QJsonObject& json);

    bool operator==(const DanteEvent&) const = default;
};

} // namespace ostrel
