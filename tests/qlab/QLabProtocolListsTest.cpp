#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "qlab/QLabProtocol.h"

using namespace ostrel;

namespace {

const Date now = addingSeconds(Date {}, 1'700'000'000.0);

std::optional<QJsonValue> json(const char* text)
{
    const auto document = QJsonDocument::fromJson(QByteArray(text));
    if (document.isArray()) return document.array();
    return document.object();
}

} // namespace

TEST(QLabProtocolLists, WorkspacesNeedAUniqueIdAndMayLackAName)
{
    const auto workspaces = QLabProtocol::parseWorkspaces(json(
        R"([{"uniqueID":"W1","displayName":"Show.qlab5"},{"displayName":"lost"},{"uniqueID":"W2"},)"
        R"({"uniqueID":3},{"uniqueID":"W4","displayName":4}])"));
    EXPECT_EQ(workspaces,
        (std::vector<QLabWorkspace> {
            {"W1", "Show.qlab5"}, {"W2", "Untitled Workspace"}, {"W4", "Untitled Workspace"}}));
}

TEST(QLabProtocolLists, WorkspacesFromAnythingButAListOfObjectsAreNone)
{
    EXPECT_TRUE(QLabProtocol::parseWorkspaces(std::nullopt).empty());
    EXPECT_TRUE(QLabProtocol::parseWorkspaces(json(R"({"uniqueID":"W1"})")).empty());
    EXPECT_TRUE(QLabProtocol::parseWorkspaces(json(R"([{"uniqueID":"W1"}, 5])")).empty());
    EXPECT_TRUE(QLabProtocol::parseWorkspaces(QJsonValue("W1")).empty());
}

TEST(QLabProtocolLists, CuesAreReadInOrderWithTextRules)
{
    const auto cues = QLabProtocol::parseCues(
        json(R"([{"uniqueID":"A","number":12,"name":"Rain","type":"Audio","isPaused":true},)"
             R"({"uniqueID":"B","number":"1.5","type":"Fade"},{"uniqueID":"C"}])"),
        now);
    ASSERT_EQ(cues.size(), 3u);
    EXPECT_EQ(cues[0].id, "A");
    EXPECT_EQ(cues[0].number, "12");
    EXPECT_EQ(cues[0].name, "Rain");
    EXPECT_EQ(cues[0].type, "Audio");
    EXPECT_FALSE(cues[0].isPaused);
    EXPECT_EQ(cues[0].startedAt, now);
    EXPECT_EQ(cues[1].number, "1.5");
    EXPECT_EQ(cues[1].name, "");
    EXPECT_EQ(cues[2].type, "");
    EXPECT_FALSE(cues[2].parentID.has_value());
}

TEST(QLabProtocolLists, CueListsAndCartsAreNotCues)
{
    const auto cues = QLabProtocol::parseCues(
        json(R"([{"uniqueID":"L","type":"Cue List"},{"uniqueID":"K","type":"Cart"},)"
             R"({"uniqueID":"G","type":"Group"},{"type":"Audio"}])"),
        now);
    ASSERT_EQ(cues.size(), 1u);
    EXPECT_EQ(cues[0].id, "G");
}

TEST(QLabProtocolLists, CuesFromAnythingButAListOfObjectsAreNone)
{
    EXPECT_TRUE(QLabProtocol::parseCues(std::nullopt, now).empty());
    EXPECT_TRUE(QLabProtocol::parseCues(json(R"({"uniqueID":"A"})"), now).empty());
    EXPECT_TRUE(QLabProtocol::parseCues(json(R"([[{"uniqueID":"A"}]])"), now).empty());
}
