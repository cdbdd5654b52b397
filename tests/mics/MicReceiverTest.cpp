#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "mics/MicIssue.h"
#include "mics/MicReceiver.h"

namespace ostrel {
namespace {

TEST(MicReceiverTest, kindsHaveTheirRawValuesAndTitlesInOrder)
{
    ASSERT_EQ(MicReceiverKinds::all.size(), 2u);
    EXPECT_EQ(MicReceiverKinds::rawValue(MicReceiverKinds::all[0]), "g4");
    EXPECT_EQ(MicReceiverKinds::title(MicReceiverKind::g4), "ew G4");
    EXPECT_EQ(MicReceiverKinds::rawValue(MicReceiverKinds::all[1]), "ewdx");
    EXPECT_EQ(MicReceiverKinds::title(MicReceiverKind::ewdx), "EW-DX");
    EXPECT_FALSE(MicReceiverKinds::fromRawValue("G4"));
}

TEST(MicReceiverTest, aListRoundTripsThroughItsStoredJson)
{
    const std::vector<MicReceiver> list {
        {QUuid::createUuid(), MicReceiverKind::g4, "192.168.1.50", "Rack A"},
        {QUuid::createUuid(), MicReceiverKind::ewdx, "ewdx.local", ""}};
    const QByteArray data = MicReceiver::encodeList(list);
    EXPECT_TRUE(data.contains("\"kind\":\"ewdx\""));
    EXPECT_EQ(MicReceiver::decodeList(data), list);
}

TEST(MicReceiverTest, aStoredListWithOneUndecodableElementDecodesAsNothing)
{
    const MicReceiver good {QUuid::createUuid(), MicReceiverKind::g4, "10.0.0.1", ""};
    QJsonObject bad = good.toJson();
    bad["kind"] = "g5";
    const QByteArray data
        = QJsonDocument(QJsonArray {good.toJson(), bad}).toJson(QJsonDocument::Compact);
    EXPECT_FALSE(MicReceiver::decodeList(data).has_value());
    EXPECT_FALSE(MicReceiver::decodeList("[{\"id\":\"x\",\"kind\":\"g4\",\"host\":\"h\"}]"));
    EXPECT_FALSE(MicReceiver::decodeList("not json"));
}

TEST(MicReceiverTest, theKeyIsTheUpperCaseUuid)
{
    const MicReceiver receiver {
        QUuid::fromString(QStringLiteral("{6f9619ff-8b86-d011-b42d-00c04fc964ff}")),
        MicReceiverKind::g4, "h", ""};
    EXPECT_EQ(receiver.key(), "6F9619FF-8B86-D011-B42D-00C04FC964FF");
}

TEST(MicIssueTest, theIdIsTheKeyABarAndTheRawKind)
{
    const MicIssue issue {"UUID#2", "Bob", MicIssueKind::lowBattery, Date {}};
    EXPECT_EQ(issue.id(), "UUID#2|3");
}

TEST(MicIssueTest, issuesRoundTripThroughJsonAndAKindAboveThreeFails)
{
    const MicIssue issue {"K#1", "Bob", MicIssueKind::receiverOffline,
        Date {} + std::chrono::milliseconds(1'700'000'000'250)};
    const auto back = MicIssue::fromJson(issue.toJson());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->key, issue.key);
    EXPECT_EQ(back->kind, issue.kind);
    EXPECT_NEAR(secondsBetween(back->since, issue.since), 0.0, 1e-6);
    QJsonObject bad = issue.toJson();
    bad["kind"] = 4;
    EXPECT_FALSE(MicIssue::fromJson(bad));
    bad["kind"] = 1.5;
    EXPECT_FALSE(MicIssue::fromJson(bad));
}

TEST(MicIssueTest, equalityTakesTheDateIntoAccount)
{
    const MicIssue a {"K#1", "Bob", MicIssueKind::dropout, Date {}};
    MicIssue b = a;
    EXPECT_EQ(a, b);
    b.since += std::chrono::seconds(1);
    EXPECT_NE(a, b);
}

TEST(MicIssueTest, kindsHaveTheirTitles)
{
    EXPECT_EQ(MicIssueKinds::title(MicIssueKind::dropout), "Dropout");
    EXPECT_EQ(MicIssueKinds::title(MicIssueKind::receiverOffline), "Not responding");
    EXPECT_EQ(MicIssueKinds::title(MicIssueKind::lowSignal), "Low signal");
    EXPECT_EQ(MicIssueKinds::title(MicIssueKind::lowBattery), "Low battery");
}

} // namespace
} // namespace ostrel
