#include <gtest/gtest.h>

#include "qlab/QLabProtocol.h"

using namespace ostrel;

namespace {

const Date now = addingSeconds(Date {}, 1'700'000'000.0);

std::vector<OSCArgument> strings(std::initializer_list<const char*> texts)
{
    std::vector<OSCArgument> arguments;
    for (const char* text : texts)
        arguments.push_back(OSCArgument::string(text));
    return arguments;
}

std::optional<QLabMessage> parse(
    const std::string& address, std::vector<OSCArgument> arguments = {})
{
    return QLabProtocol::parse(OSCMessage(address, std::move(arguments)), now);
}

} // namespace

TEST(QLabProtocolParse, StartEventWithEmptyNumberAndNameYieldsAnUntitledCue)
{
    const auto message
        = parse("/qlab/event/workspace/cue/start", strings({"", "", "ID-7", "Audio"}));
    ASSERT_TRUE(message.has_value());
    const auto* started = std::get_if<QLabMessage::CueStarted>(&message->value);
    ASSERT_NE(started, nullptr);
    QLabCue expected;
    expected.id = "ID-7";
    expected.type = "Audio";
    expected.startedAt = now;
    EXPECT_EQ(started->cue, expected);
    EXPECT_EQ(started->cue.displayName(), "Untitled Audio Cue");
}

TEST(QLabProtocolParse, StartEventReadsNumberNameIdAndType)
{
    const auto message
        = parse("/qlab/event/workspace/cue/start", strings({"12", "Thunder", "ID-1", "Audio"}));
    ASSERT_TRUE(message.has_value());
    const auto& cue = std::get<QLabMessage::CueStarted>(message->value).cue;
    EXPECT_EQ(cue.number, "12");
    EXPECT_EQ(cue.name, "Thunder");
    EXPECT_EQ(cue.id, "ID-1");
    EXPECT_EQ(cue.type, "Audio");
    EXPECT_FALSE(cue.isPaused);
    EXPECT_FALSE(cue.actionElapsed || cue.duration || cue.sampledAt || cue.parentID
        || cue.timecodeStart || cue.timecodeRateIndex || cue.timecodeOutputType);
}

TEST(QLabProtocolParse, EventArgumentsOfOtherKindsAreReadAsText)
{
    const auto message = parse("/qlab/event/workspace/cue/start",
        {OSCArgument::float32(2.5f), OSCArgument::blob({1}), OSCArgument::int32(77),
            OSCArgument::string("Audio"), OSCArgument::null()});
    ASSERT_TRUE(message.has_value());
    const auto& cue = std::get<QLabMessage::CueStarted>(message->value).cue;
    EXPECT_EQ(cue.number, "2.5");
    EXPECT_EQ(cue.name, "");
    EXPECT_EQ(cue.id, "77");
}

TEST(QLabProtocolParse, StopEventYieldsTheId)
{
    EXPECT_EQ(parse("/qlab/event/workspace/cue/stop", strings({"1", "A", "ID-1", "Audio"})),
        QLabMessage {QLabMessage::CueStopped {"ID-1"}});
}

TEST(QLabProtocolParse, EventWithThreeArgumentsIsDropped)
{
    EXPECT_FALSE(parse("/qlab/event/workspace/cue/start", strings({"1", "A", "ID-1"})).has_value());
    EXPECT_FALSE(parse("/qlab/event/workspace/cue/stop", strings({"1", "A", "ID-1"})).has_value());
}

TEST(QLabProtocolParse, EventWithEmptyThirdArgumentIsDropped)
{
    EXPECT_FALSE(
        parse("/qlab/event/workspace/cue/start", strings({"1", "A", "", "Audio"})).has_value());
    EXPECT_FALSE(parse("/qlab/event/workspace/cue/stop",
        {OSCArgument::string("1"), OSCArgument::string("A"), OSCArgument::boolean(true),
            OSCArgument::string("Audio")})
                     .has_value());
}

TEST(QLabProtocolParse, OtherEventAddressesAreNotEvents)
{
    EXPECT_FALSE(
        parse("/qlab/event/workspace/cue/pause", strings({"1", "A", "ID", "Audio"})).has_value());
    EXPECT_FALSE(
        parse("/qlab/event/workspace/cue/start/", strings({"1", "A", "ID", "Audio"})).has_value());
}

TEST(QLabProtocolParse, WorkspaceUpdate)
{
    EXPECT_EQ(parse("/update/workspace/W"), QLabMessage {QLabMessage::WorkspaceUpdated {"W"}});
    EXPECT_EQ(parse("/update/workspace/W/"), QLabMessage {QLabMessage::WorkspaceUpdated {"W"}});
}

TEST(QLabProtocolParse, UpdateWithoutAWorkspaceIsNothing)
{
    EXPECT_FALSE(parse("/update/workspace/").has_value());
    EXPECT_FALSE(parse("/update/workspace//").has_value());
}

TEST(QLabProtocolParse, CueUpdateNeedsTheCueId)
{
    EXPECT_FALSE(parse("/update/workspace/W/cue_id").has_value());
    EXPECT_EQ(parse("/update/workspace/W/cue_id/C-3"),
        (QLabMessage {QLabMessage::CueUpdated {"W", "C-3"}}));
    EXPECT_EQ(parse("/update/workspace/W/cue_id/C-3/extra"),
        (QLabMessage {QLabMessage::CueUpdated {"W", "C-3"}}));
}

TEST(QLabProtocolParse, PlaybackPositionOfACueList)
{
    EXPECT_EQ(parse("/update/workspace/W/cueList/L/playbackPosition"),
        QLabMessage {QLabMessage::PlaybackPositionChanged {"W"}});
    EXPECT_FALSE(parse("/update/workspace/W/cueList/L").has_value());
}

TEST(QLabProtocolParse, DisconnectOfAWorkspace)
{
    EXPECT_EQ(parse("/update/workspace/W/disconnect"), QLabMessage {QLabMessage::Disconnect {"W"}});
}

TEST(QLabProtocolParse, OtherUpdatesAndAddressesAreNothing)
{
    EXPECT_FALSE(parse("/update/workspace/W/settings").has_value());
    EXPECT_FALSE(parse("/update/cueList").has_value());
    EXPECT_FALSE(parse("/workspaces").has_value());
    EXPECT_FALSE(parse("/").has_value());
}

TEST(QLabProtocolParse, ReplyIsParsedAsAReply)
{
    const auto message = parse("/reply/workspaces", strings({R"({"status":"ok","data":[]})"}));
    ASSERT_TRUE(message.has_value());
    const auto* reply = std::get_if<QLabMessage::Reply>(&message->value);
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->reply.address, "/workspaces");
    EXPECT_TRUE(reply->reply.isOK());
}

TEST(QLabProtocolParse, UnreadableReplyIsNothing)
{
    EXPECT_FALSE(parse("/reply/workspaces").has_value());
    EXPECT_FALSE(parse("/reply/workspaces", strings({"not json"})).has_value());
}

TEST(QLabProtocolParse, CueIdIsThePieceBehindCueId)
{
    EXPECT_EQ(QLabProtocol::cueID("/workspace/W/cue_id/C-1/valuesForKeys"), "C-1");
    EXPECT_EQ(QLabProtocol::cueID("/reply/workspace/W/cue_id//C-2/startTime"), "C-2");
    EXPECT_FALSE(QLabProtocol::cueID("/workspace/W/cue_id").has_value());
    EXPECT_FALSE(QLabProtocol::cueID("/workspace/W/runningOrPausedCues").has_value());
    EXPECT_EQ(QLabProtocol::cueID("/a/cue_id/first/cue_id/second"), "first");
}
