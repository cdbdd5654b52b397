#include "network/CrewChat.h"

#include <algorithm>

namespace ostrel::CrewChat {

bool insert(std::vector<ChatMessage>& messages, const ChatMessage& message, std::size_t limit)
{
    const auto sameId = [&](const ChatMessage& held) { return held.id == message.id; };
    if (std::any_of(messages.begin(), messages.end(), sameId)) return false;
    auto position = messages.end();
    while (position != messages.begin() && std::prev(position)->date > message.date)
        --position;
    messages.insert(position, message);
    if (messages.size() > limit)
        messages.erase(messages.begin(),
            messages.begin() + static_cast<std::ptrdiff_t>(messages.size() - limit));
    return true;
}

bool acknowledge(std::vector<ChatMessage>& messages, const QUuid& id, const QString& station)
{
    const auto found = std::find_if(messages.begin(), messages.end(),
        [&](const ChatMessage& message) { return message.id == id; });
    if (found == messages.end() || found->acknowledgedBy.contains(station)) return false;
    found->acknowledgedBy.append(station);
    return true;
}

std::vector<ChatMessage> pendingUrgent(
    const std::vector<ChatMessage>& messages, const QString& station)
{
    std::vector<ChatMessage> pending;
    for (const ChatMessage& message : messages) {
        if (message.isUrgent && message.sender != station
            && !message.acknowledgedBy.contains(station))
            pending.push_back(message);
    }
    return pending;
}

std::vector<ChatMessage> last(const std::vector<ChatMessage>& messages, std::size_t count)
{
    const std::size_t first = messages.size() > count ? messages.size() - count : 0;
    return {messages.begin() + static_cast<std::ptrdiff_t>(first), messages.end()};
}

} // namespace ostrel::CrewChat
