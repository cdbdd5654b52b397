#pragma once

// Everything that crosses the network between stations of a crew. In JSON one object with
// exactly one key, the case's name.
#include <variant>
#include <vector>

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include "network/ChatMessage.h"
#include "network/CrewRole.h"
#include "network/MirrorState.h"

namespace ostrel {

namespace CrewMessages {

struct Hello {
    QString station;
    CrewRole role = CrewRole::standalone;
    bool operator==(const Hello&) const = default;
};
// One measurement frame in the recording's binary layout.
struct Interval {
    QByteArray frame;
    bool operator==(const Interval&) const = default;
};
struct State {
    MirrorState state;
    bool operator==(const State&) const = default;
};
struct Chat {
    ChatMessage message;
    bool operator==(const Chat&) const = default;
};
struct Acknowledge {
    QUuid messageID;
    QString station;
    bool operator==(const Acknowledge&) const = default;
};
struct History {
    std::vector<ChatMessage> messages;
    bool operator==(const History&) const = default;
};
struct Roster {
    QStringList stations;
    bool operator==(const Roster&) const = default;
};

} // namespace CrewMessages

using CrewMessage = std::variant<CrewMessages::Hello, CrewMessages::Interval, CrewMessages::State,
    CrewMessages::Chat, CrewMessages::Acknowledge, CrewMessages::History, CrewMessages::Roster>;

namespace CrewMessageJson {

QJsonObject encode(const CrewMessage& message);

struct Failure {
    QString message;
};
// A failure for anything but one known case with a well-formed payload; an object with another
// number of keys than one fails with "Invalid number of keys found, expected one."
std::variant<CrewMessage, Failure> decode(const QJsonObject& object);

} // namespace CrewMessageJson
} // namespace ostrel
