#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>

#include "qlab/QLabProtocol.h"

using namespace ostrel;

namespace {

std::optional<QLabReply> reply(const std::string& address, std::vector<OSCArgument> arguments)
{
    return QLabProtocol::parseReply(OSCMessage(address, std::move(arguments)));
}

std::optional<QLabReply> reply(const std::string& address, const char* json)
{
    return reply(address, {OSCArgument::string(json)});
}

} // namespace

TEST(QLabProtocolReply, ReadsAddressWorkspaceStatusAndData)
{
    const auto parsed = reply("/reply/workspace/W/runningOrPausedCues/shallow",
        R"({"address":"/workspace/W/runningOrPausedCues/shallow",)"
        R"("workspace_id":"W","status":"ok","data":[{"uniqueID":"1"}]})");
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->address, "/workspace/W/runningOrPausedCues/shallow");
    EXPECT_EQ(parsed->workspaceID, "W");
    EXPECT_EQ(parsed->status, "ok");
    EXPECT_TRUE(parsed->isOK());
    EXPECT_EQ(parsed->data, QJsonValue(QJsonArray {QJsonObject {{"uniqueID", "1"}}}));
}

TEST(QLabProtocolReply, TopLevelListIsDropped)
{
    EXPECT_FALSE(reply("/reply/workspaces", "[]").has_value());
}

TEST(QLabProtocolReply, TopLevelNumberIsDropped)
{
    EXPECT_FALSE(reply("/reply/workspaces", "42").has_value());
    EXPECT_FALSE(reply("/reply/workspaces", {OSCArgument::int32(42)}).has_value());
}

TEST(QLabProtocolReply, ReplyWithoutStatusIsOK)
{
    const auto parsed = reply("/reply/thump", "{}");
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->status, "ok");
    EXPECT_TRUE(parsed->isOK());
    EXPECT_FALSE(parsed->data.has_value());
    EXPECT_FALSE(parsed->workspaceID.has_value());
}

TEST(QLabProtocolReply, OnlyExactlyOkIsOK)
{
    EXPECT_FALSE(reply("/reply/x", R"({"status":"error"})")->isOK());
    EXPECT_FALSE(reply("/reply/x", R"({"status":"OK"})")->isOK());
    EXPECT_TRUE(reply("/reply/x", R"({"status":7})")->isOK());
}

TEST(QLabProtocolReply, AddressFallsBackToTheOscAddressWithoutReply)
{
    EXPECT_EQ(reply("/reply/workspace/W/connect", "{}")->address, "/workspace/W/connect");
    EXPECT_EQ(
        reply("/reply/workspace/W/connect", R"({"address":5})")->address, "/workspace/W/connect");
}

TEST(QLabProtocolReply, NonStringWorkspaceIdIsAbsent)
{
    EXPECT_FALSE(reply("/reply/x", R"({"workspace_id":12})")->workspaceID.has_value());
}

TEST(QLabProtocolReply, FirstArgumentWithTextIsRead)
{
    const auto parsed = reply("/reply/x",
        {OSCArgument::blob({0x7b, 0x7d}), OSCArgument::null(),
            OSCArgument::string(R"({"status":"denied"})"),
            OSCArgument::string(R"({"status":"ok"})")});
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(parsed->status, "denied");
}

TEST(QLabProtocolReply, ReplyWithoutTextIsDropped)
{
    EXPECT_FALSE(reply("/reply/x", std::vector<OSCArgument> {}).has_value());
    EXPECT_FALSE(
        reply("/reply/x", {OSCArgument::boolean(true), OSCArgument::blob({})}).has_value());
}

TEST(QLabProtocolReply, BrokenJsonIsDropped)
{
    EXPECT_FALSE(reply("/reply/x", R"({"status":)").has_value());
    EXPECT_FALSE(reply("/reply/x", "").has_value());
}

TEST(QLabProtocolReply, DataIsKeptAsItStandsEvenWhenNull)
{
    EXPECT_EQ(reply("/reply/x", R"({"data":"01:00:00:00"})")->data, QJsonValue("01:00:00:00"));
    EXPECT_EQ(reply("/reply/x", R"({"data":null})")->data, QJsonValue(QJsonValue::Null));
}
