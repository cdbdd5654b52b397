#include <gtest/gtest.h>

#include "qlab/ByteText.h"
#include "qlab/QLabProtocol.h"

using namespace ostrel;

namespace {

OSCMessage message(const std::string& address, std::vector<OSCArgument> arguments = {})
{
    return OSCMessage(address, std::move(arguments));
}

} // namespace

TEST(QLabProtocolRequests, Workspaces)
{
    EXPECT_EQ(QLabProtocol::workspaces(), message("/workspaces"));
}

TEST(QLabProtocolRequests, ConnectSendsThePasscodeOnlyWhenThereIsOne)
{
    EXPECT_EQ(QLabProtocol::connect("W-1", ""), message("/workspace/W-1/connect"));
    EXPECT_EQ(QLabProtocol::connect("W-1", "1234"),
        message("/workspace/W-1/connect", {OSCArgument::string("1234")}));
}

TEST(QLabProtocolRequests, SubscribeToUpdatesSendsIntOne)
{
    EXPECT_EQ(QLabProtocol::subscribeToUpdates(), message("/updates", {OSCArgument::int32(1)}));
}

TEST(QLabProtocolRequests, ListenForEachEvent)
{
    ASSERT_EQ(QLabProtocol::listenedEvents, (QStringList {"cue/start", "cue/stop"}));
    EXPECT_EQ(QLabProtocol::listen("W", "cue/start"), message("/workspace/W/listen/cue/start"));
    EXPECT_EQ(QLabProtocol::listen("W", "cue/stop"), message("/workspace/W/listen/cue/stop"));
}

TEST(QLabProtocolRequests, RunningCuesAsksForTheShallowList)
{
    EXPECT_EQ(QLabProtocol::runningCues("W"), message("/workspace/W/runningOrPausedCues/shallow"));
}

TEST(QLabProtocolRequests, CueValuesSendsTheKeysAsACompactJsonArray)
{
    EXPECT_EQ(QLabProtocol::cueValues("W", "C-9", QLabProtocol::parentKeys),
        message("/workspace/W/cue_id/C-9/valuesForKeys",
            {OSCArgument::string(R"(["number","name","type","parent"])")}));
    EXPECT_EQ(QLabProtocol::cueValues("W", "C", {}),
        message("/workspace/W/cue_id/C/valuesForKeys", {OSCArgument::string("[]")}));
}

TEST(QLabProtocolRequests, CuePropertyAppendsTheKey)
{
    EXPECT_EQ(QLabProtocol::cueProperty("W", "C", "startTime"),
        message("/workspace/W/cue_id/C/startTime"));
}

TEST(QLabProtocolRequests, ThumpAndDisconnect)
{
    EXPECT_EQ(QLabProtocol::thump("W"), message("/workspace/W/thump"));
    EXPECT_EQ(QLabProtocol::disconnect("W"), message("/workspace/W/disconnect"));
}

TEST(QLabProtocolRequests, IdsGoIntoTheAddressAsTheyStand)
{
    EXPECT_EQ(QLabProtocol::thump("a/b %1 é"), message("/workspace/a/b %1 \xC3\xA9/thump"));
    EXPECT_EQ(QLabProtocol::cueProperty("%2", "%1", "x"), message("/workspace/%2/cue_id/%1/x"));
}

TEST(QLabProtocolRequests, KeyListsAreTheOnesQLabKnows)
{
    EXPECT_EQ(QLabProtocol::cueValueKeys,
        (QStringList {"number", "name", "type", "parent", "isPaused", "actionElapsed",
            "currentDuration", "duration"}));
    EXPECT_EQ(QLabProtocol::timecodeKeys,
        (QStringList {"displayName", "startTime", "framerate", "outputType"}));
    EXPECT_EQ(
        QLabProtocol::timecodePropertyKeys, (QStringList {"startTime", "framerate", "outputType"}));
    EXPECT_EQ(QLabProtocol::ignoredCueTypes, (QSet<QString> {"Cue List", "Cart"}));
}

TEST(QLabProtocolRequests, UpdatesEncodesToTheBytesQLabExpects)
{
    EXPECT_EQ(QLabProtocol::subscribeToUpdates().encoded(),
        test::hex("2f757064 61746573 00000000 2c690000 00000001"));
}
