#pragma once

// The crew chat as every station keeps it: messages in the authors' date order, each once, the
// oldest dropped beyond a limit, and acknowledgements of urgent ones by station.
#include <cstddef>
#include <vector>

#include <QString>
#include <QUuid>

#include "network/ChatMessage.h"

namespace ostrel::CrewChat {

// False when a message with this id is already held: relays and history bring copies. Placed
// after the last message not dated later, so clocks that differ still give date order.
bool insert(std::vector<ChatMessage>& messages, const ChatMessage& message, std::size_t limit);
// False when the message is unknown or the station has already acknowledged it.
bool acknowledge(std::vector<ChatMessage>& messages, const QUuid& id, const QString& station);
// Urgent messages of others that `station` has not acknowledged, in order.
std::vector<ChatMessage> pendingUrgent(
    const std::vector<ChatMessage>& messages, const QString& station);
// The newest `count` messages, oldest first.
std::vector<ChatMessage> last(const std::vector<ChatMessage>& messages, std::size_t count);

} // namespace ostrel::CrewChat
