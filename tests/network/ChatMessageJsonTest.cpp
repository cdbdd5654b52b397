#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "network/ChatMessage.h"
#include "network/CrewSamples.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

QJsonObject parsed(const char* json)
{
    return QJsonDocument::fromJson(json).object();
}

const char* const minimal = R"({"id":"0F8FAD5B-D9CB-469F-A165-70867728950E","sender":"Stalls",
    "text":"Stand by","date":12.5,"isUrgent":false,"acknowledgedBy":[]})";

} // namespace

TEST(ChatMessageJsonTest, AMessageRoundTripsWithEveryField)
{
    const ChatMessage message = sampleChat();
    EXPECT_EQ(ChatMessage::fromJson(message.toJson()), message);
}

TEST(ChatMessageJsonTest, TheIdIsUpperCaseAndTheDateSecondsSince2001)
{
    ChatMessage message = sampleChat();
    message.id = QUuid::fromString(QString("0f8fad5b-d9cb-469f-a165-70867728950e"));
    message.date = crewDate(12.5);
    const QJsonObject json = message.toJson();
    EXPECT_EQ(json.value("id").toString(), QString("0F8FAD5B-D9CB-469F-A165-70867728950E"));
    EXPECT_DOUBLE_EQ(json.value("date").toDouble(), 12.5);
    EXPECT_EQ(json.value("alert").toString(), QString("micDead"));
    EXPECT_EQ(json.value("acknowledgedBy").toArray().size(), 2);
}

TEST(ChatMessageJsonTest, AbsentAlertAndCueAreLeftOut)
{
    ChatMessage message = sampleChat();
    message.alert.reset();
    message.cue.reset();
    const QJsonObject json = message.toJson();
    EXPECT_EQ(
        json.keys(), QStringList({"acknowledgedBy", "date", "id", "isUrgent", "sender", "text"}));
}

TEST(ChatMessageJsonTest, AMessageWithoutAnAlertKeyDecodes)
{
    const auto message = ChatMessage::fromJson(parsed(minimal));
    ASSERT_TRUE(message);
    EXPECT_FALSE(message->alert);
    EXPECT_FALSE(message->cue);
    EXPECT_EQ(message->text, QString("Stand by"));
    EXPECT_EQ(message->id, QUuid::fromString(QString("0f8fad5b-d9cb-469f-a165-70867728950e")));
}

TEST(ChatMessageJsonTest, AMessageWithoutAcknowledgedByDoesNotDecode)
{
    QJsonObject json = parsed(minimal);
    json.remove("acknowledgedBy");
    EXPECT_FALSE(ChatMessage::fromJson(json));
}

TEST(ChatMessageJsonTest, EveryRequiredKeyIsRequired)
{
    for (const char* key : {"id", "sender", "text", "date", "isUrgent", "acknowledgedBy"}) {
        QJsonObject json = parsed(minimal);
        json.remove(key);
        EXPECT_FALSE(ChatMessage::fromJson(json)) << key;
    }
}

TEST(ChatMessageJsonTest, AnUnknownAlertABadDateOrABadIdFailsToDecode)
{
    QJsonObject json = parsed(minimal);
    json.insert("alert", "micExploded");
    EXPECT_FALSE(ChatMessage::fromJson(json));

    json = parsed(minimal);
    json.insert("date", "yesterday");
    EXPECT_FALSE(ChatMessage::fromJson(json));
    json.insert("date", 1e300);
    EXPECT_FALSE(ChatMessage::fromJson(json));

    json = parsed(minimal);
    json.insert("id", "{0F8FAD5B-D9CB-469F-A165-70867728950E}");
    EXPECT_FALSE(ChatMessage::fromJson(json));
    json.insert("id", "not a uuid at all, but 36 chars long!");
    EXPECT_FALSE(ChatMessage::fromJson(json));

    json = parsed(minimal);
    json.insert("acknowledgedBy", QJsonArray {"FOH", 3});
    EXPECT_FALSE(ChatMessage::fromJson(json));
    json = parsed(minimal);
    json.insert("isUrgent", 1);
    EXPECT_FALSE(ChatMessage::fromJson(json));
}
