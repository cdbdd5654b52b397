#pragma once

// The words and symbols a chat message is shown with, shared by its bubble and its banner.
#include <QString>
#include <QTimeZone>

#include "common/Date.h"
#include "network/ChatMessage.h"

namespace ostrel::ChatText {

// Hour, minute and second, two digits each.
QString time(Date date, const QTimeZone& zone = QTimeZone::systemTimeZone());
// The quick alert's symbol, else the warning triangle for an urgent message, else none.
QString symbol(const ChatMessage& message);
// " · Cue " and the label when the message carries one; empty otherwise.
QString cueSuffix(const ChatMessage& message);
// "Seen by " and the stations that acknowledged; empty while none has.
QString seenBy(const ChatMessage& message);

} // namespace ostrel::ChatText
