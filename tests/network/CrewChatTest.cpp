#include <gtest/gtest.h>

#include "network/CrewChat.h"
#include "network/CrewSamples.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

ChatMessage said(const QString& sender, double at, bool urgent = false)
{
    ChatMessage message = sampleChat(sender, at);
    message.text = QString("%1 at %2").arg(sender).arg(at);
    message.isUrgent = urgent;
    message.acknowledgedBy.clear();
    return message;
}

QStringList texts(const std::vector<ChatMessage>& messages)
{
    QStringList result;
    for (const ChatMessage& message : messages)
        result.append(message.text);
    return result;
}

} // namespace

TEST(CrewChatTest, AMessageAlreadyHeldIsNotAddedAgain)
{
    std::vector<ChatMessage> messages;
    const ChatMessage message = said("A", 10);
    EXPECT_TRUE(CrewChat::insert(messages, message, 500));
    ChatMessage copy = message;
    copy.text = "changed on the way";
    EXPECT_FALSE(CrewChat::insert(messages, copy, 500));
    EXPECT_EQ(texts(messages), QStringList({"A at 10"}));
}

TEST(CrewChatTest, AMessageDatedEarlierThanTheNewestIsInsertedInPlace)
{
    std::vector<ChatMessage> messages;
    CrewChat::insert(messages, said("A", 10), 500);
    CrewChat::insert(messages, said("A", 30), 500);
    CrewChat::insert(messages, said("B", 20), 500);
    CrewChat::insert(messages, said("C", 5), 500);
    CrewChat::insert(messages, said("D", 30), 500);
    EXPECT_EQ(texts(messages), QStringList({"C at 5", "A at 10", "B at 20", "A at 30", "D at 30"}));
}

TEST(CrewChatTest, TheMessageBeyondTheLimitPushesOutTheOldest)
{
    std::vector<ChatMessage> messages;
    for (int index = 1; index <= 501; ++index)
        CrewChat::insert(messages, said("A", index), 500);
    ASSERT_EQ(messages.size(), 500u);
    EXPECT_EQ(messages.front().text, QString("A at 2"));
    EXPECT_EQ(messages.back().text, QString("A at 501"));
}

TEST(CrewChatTest, TheLastMessagesAreTheNewestOldestFirst)
{
    std::vector<ChatMessage> messages;
    for (int index = 1; index <= 150; ++index)
        CrewChat::insert(messages, said("A", index), 500);
    const auto newest = CrewChat::last(messages, 100);
    ASSERT_EQ(newest.size(), 100u);
    EXPECT_EQ(newest.front().text, QString("A at 51"));
    EXPECT_EQ(newest.back().text, QString("A at 150"));
    EXPECT_EQ(CrewChat::last(newest, 500).size(), 100u);
}

TEST(CrewChatTest, AnAcknowledgementIsAddedOncePerStation)
{
    std::vector<ChatMessage> messages;
    const ChatMessage message = said("A", 1, true);
    CrewChat::insert(messages, message, 500);
    EXPECT_TRUE(CrewChat::acknowledge(messages, message.id, "FOH"));
    EXPECT_FALSE(CrewChat::acknowledge(messages, message.id, "FOH"));
    EXPECT_TRUE(CrewChat::acknowledge(messages, message.id, "B"));
    EXPECT_FALSE(CrewChat::acknowledge(messages, QUuid::createUuid(), "B"));
    EXPECT_EQ(messages[0].acknowledgedBy, QStringList({"FOH", "B"}));
}

TEST(CrewChatTest, PendingUrgentLeavesOutOwnMessagesAndThoseThisStationAnswered)
{
    std::vector<ChatMessage> messages;
    const ChatMessage mine = said("FOH", 1, true);
    const ChatMessage theirs = said("A", 2, true);
    const ChatMessage answered = said("B", 3, true);
    const ChatMessage calm = said("B", 4, false);
    for (const auto& message : {mine, theirs, answered, calm})
        CrewChat::insert(messages, message, 500);
    CrewChat::acknowledge(messages, answered.id, "FOH");
    CrewChat::acknowledge(messages, theirs.id, "B");
    EXPECT_EQ(texts(CrewChat::pendingUrgent(messages, "FOH")), QStringList({"A at 2"}));
    EXPECT_EQ(texts(CrewChat::pendingUrgent(messages, "A")), QStringList({"FOH at 1", "B at 3"}));
}
