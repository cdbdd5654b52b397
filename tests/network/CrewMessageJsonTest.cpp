#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "network/CrewMessage.h"
#include "network/CrewSamples.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

std::optional<CrewMessage> decoded(const QJsonObject& object)
{
    auto result = CrewMessageJson::decode(object);
    if (auto* message = std::get_if<CrewMessage>(&result)) return *message;
    return std::nullopt;
}

QString failureOf(const QJsonObject& object)
{
    auto result = CrewMessageJson::decode(object);
    if (auto* failure = std::get_if<CrewMessageJson::Failure>(&result)) return failure->message;
    return {};
}

QJsonObject parsed(const char* json)
{
    return QJsonDocument::fromJson(json).object();
}

} // namespace

TEST(CrewMessageJsonTest, AHelloIsOneKeyWithStationAndRole)
{
    const QJsonObject json
        = CrewMessageJson::encode(CrewMessages::Hello {"FOH", CrewRole::primary});
    EXPECT_EQ(json.keys(), QStringList({"hello"}));
    const QJsonObject payload = json.value("hello").toObject();
    EXPECT_EQ(payload.value("station").toString(), QString("FOH"));
    EXPECT_EQ(payload.value("role").toString(), QString("primary"));
}

TEST(CrewMessageJsonTest, UnnamedPayloadsStandUnderUnderscoreZero)
{
    const QJsonObject interval
        = CrewMessageJson::encode(CrewMessages::Interval {QByteArray("\x01\x02\xff", 3)});
    EXPECT_EQ(interval.value("interval").toObject().value("_0").toString(), QString("AQL/"));
    const QJsonObject roster = CrewMessageJson::encode(CrewMessages::Roster {{"FOH", "Stalls"}});
    EXPECT_EQ(
        roster.value("roster").toObject().value("_0").toArray(), QJsonArray({"FOH", "Stalls"}));
    const QJsonObject chat = CrewMessageJson::encode(CrewMessages::Chat {sampleChat()});
    EXPECT_TRUE(chat.value("chat").toObject().value("_0").toObject().contains("sender"));
}

TEST(CrewMessageJsonTest, AnAcknowledgementNamesItsMessageAndStation)
{
    const QUuid id = QUuid::createUuid();
    const QJsonObject json = CrewMessageJson::encode(CrewMessages::Acknowledge {id, "Backstage"});
    const QJsonObject payload = json.value("acknowledge").toObject();
    EXPECT_EQ(payload.value("messageID").toString(), id.toString(QUuid::WithoutBraces).toUpper());
    EXPECT_EQ(payload.value("station").toString(), QString("Backstage"));
}

TEST(CrewMessageJsonTest, EveryCaseRoundTrips)
{
    const std::vector<CrewMessage> messages {
        CrewMessages::Hello {"Stalls", CrewRole::secondary},
        CrewMessages::Interval {QByteArray(16, '\x7f')},
        CrewMessages::State {sampleState()},
        CrewMessages::Chat {sampleChat()},
        CrewMessages::Acknowledge {QUuid::createUuid(), "FOH"},
        CrewMessages::History {{sampleChat("A", 1.0), sampleChat("B", 2.0)}},
        CrewMessages::Roster {{"FOH", "A", "B"}},
        CrewMessages::History {},
        CrewMessages::Roster {},
    };
    for (const CrewMessage& message : messages)
        EXPECT_EQ(decoded(CrewMessageJson::encode(message)), message);
}

TEST(CrewMessageJsonTest, AnObjectWithoutExactlyOneKeyFails)
{
    const QString expected = "Invalid number of keys found, expected one.";
    EXPECT_EQ(failureOf(QJsonObject {}), expected);
    EXPECT_EQ(failureOf(parsed(R"({"hello":{"station":"A","role":"primary"},"roster":{"_0":[]}})")),
        expected);
}

TEST(CrewMessageJsonTest, AnUnknownCaseOrRoleOrAMissingKeyFails)
{
    EXPECT_FALSE(decoded(parsed(R"({"goodbye":{}})")));
    EXPECT_FALSE(decoded(parsed(R"({"hello":{"station":"A","role":"captain"}})")));
    EXPECT_FALSE(decoded(parsed(R"({"hello":{"station":"A"}})")));
    EXPECT_FALSE(decoded(parsed(R"({"hello":"A"})")));
    EXPECT_FALSE(decoded(parsed(R"({"acknowledge":{"messageID":"nope","station":"A"}})")));
    EXPECT_FALSE(decoded(parsed(R"({"interval":{"_0":"***"}})")));
    EXPECT_FALSE(decoded(parsed(R"({"roster":{"_0":["A",1]}})")));
    EXPECT_FALSE(decoded(parsed(R"({"history":{"_0":[{"text":"no id"}]}})")));
    EXPECT_FALSE(decoded(parsed(R"({"state":{"_0":{}}})")));
    EXPECT_TRUE(decoded(parsed(R"({"hello":{"role":"primary","station":"A","extra":1}})")));
}
