#include <gtest/gtest.h>

#include <QJsonArray>

#include "network/CrewSamples.h"
#include "network/MirrorState.h"

using namespace ostrel;
using namespace ostrel::testsupport;

TEST(MirrorStateJsonTest, AStateRoundTripsWithEveryPart)
{
    const MirrorState state = sampleState();
    const QJsonObject json = state.toJson();
    EXPECT_EQ(json.value("qlabState").toString(), QString("connected"));
    EXPECT_EQ(json.value("timecodeFallbackRate").toInteger(), 3);
    EXPECT_EQ(json.value("cues").toArray().size(), 1);
    EXPECT_EQ(MirrorState::fromJson(json), state);
}

TEST(MirrorStateJsonTest, AnAbsentWorkspaceIsLeftOutAndDecodes)
{
    MirrorState state = sampleState();
    state.workspace.reset();
    const QJsonObject json = state.toJson();
    EXPECT_FALSE(json.contains("workspace"));
    EXPECT_EQ(MirrorState::fromJson(json), state);
}

TEST(MirrorStateJsonTest, EveryOtherKeyIsRequired)
{
    const QJsonObject full = sampleState().toJson();
    for (const QString& key : full.keys()) {
        if (key == u"workspace") continue;
        QJsonObject json = full;
        json.remove(key);
        EXPECT_FALSE(MirrorState::fromJson(json)) << key.toStdString();
    }
}

TEST(MirrorStateJsonTest, AnUnreadablePartSpoilsTheState)
{
    QJsonObject json = sampleState().toJson();
    json.insert("qlabState", "asleep");
    EXPECT_FALSE(MirrorState::fromJson(json));

    json = sampleState().toJson();
    json.insert("timecodeFallbackRate", 2.5);
    EXPECT_FALSE(MirrorState::fromJson(json));

    json = sampleState().toJson();
    QJsonArray cues = json.value("cues").toArray();
    cues.append(QJsonObject {{"id", "only an id"}});
    json.insert("cues", cues);
    EXPECT_FALSE(MirrorState::fromJson(json));

    json = sampleState().toJson();
    json.insert("micNames", QJsonArray {"Lead", false});
    EXPECT_FALSE(MirrorState::fromJson(json));
}
