#include <gtest/gtest.h>

#include "mics/EWDXProtocol.h"

namespace ostrel {
namespace {

using EWDXProtocol::ChannelStates;

TEST(EWDXProtocolTest, aProductWithout4CHSubscribesTwoChannelsAndLowerCase4chSubscribesFour)
{
    EXPECT_EQ(EWDXProtocol::channelCount("EW-DX EM 2 Dante"), 2);
    EXPECT_EQ(EWDXProtocol::channelCount("EW-DX EM 4 (4 channels)"), 2);
    EXPECT_EQ(EWDXProtocol::channelCount("ew-dx em 4ch dante"), 4);
    EXPECT_EQ(EWDXProtocol::channelCount("EW-DX EM 4CH"), 4);
    EXPECT_EQ(EWDXProtocol::channelCount(""), 2);
}

TEST(EWDXProtocolTest, subscriptionPathsComeInTheirOrder)
{
    EXPECT_EQ(EWDXProtocol::subscriptionPaths(1),
        (QStringList {"/channel/1/warnings", "/transmitters/1/warnings", "/channel/1",
            "/channel/1/signalQualityIndicator"}));
}

TEST(EWDXProtocolTest, anEventKeyWithTheApiPrefixActsAsTheSameKeyWithout)
{
    ChannelStates withPrefix, without;
    EXPECT_EQ(EWDXProtocol::apply(R"({"/api/channel/0/warnings":["NoLink"]})", withPrefix),
        std::set<qint64> {0});
    EXPECT_EQ(EWDXProtocol::apply(R"({"/channel/0/warnings":["NoLink"]})", without),
        std::set<qint64> {0});
    EXPECT_EQ(withPrefix, without);
    EXPECT_TRUE(withPrefix[0].hasReported);
    EXPECT_FALSE(withPrefix[0].hasSignal());
}

TEST(EWDXProtocolTest, aKeyWhoseChannelIsNoNumberIsSkippedAndChannelAloneIsSkipped)
{
    ChannelStates states;
    EXPECT_TRUE(EWDXProtocol::apply(R"({"/channel/one/warnings":[]})", states).empty());
    EXPECT_TRUE(EWDXProtocol::apply(R"({"/channel":{"name":"X"}})", states).empty());
    EXPECT_TRUE(EWDXProtocol::apply(R"({"/transmitters/0":{"name":"X"}})", states).empty());
    EXPECT_TRUE(EWDXProtocol::apply(R"({"/channel/0/frequency":5})", states).empty());
    EXPECT_TRUE(states.empty());
}

TEST(EWDXProtocolTest, theChannelPathWithAnEmptyNameKeepsTheOldNameButStillReports)
{
    ChannelStates states;
    EWDXProtocol::apply(R"({"/channel/1":{"name":"Lead"}})", states);
    EXPECT_EQ(EWDXProtocol::apply(R"({"/channel/1":{"name":""}})", states), std::set<qint64> {1});
    EXPECT_EQ(states[1].name, QString("Lead"));
}

TEST(EWDXProtocolTest, transmitterWarningsBeforeAnyChannelWarningsMeanNoSignal)
{
    ChannelStates states;
    EWDXProtocol::apply(R"({"/transmitters/0/warnings":["LowBattery"]})", states);
    EXPECT_FALSE(states[0].hasReported);
    EXPECT_FALSE(states[0].hasSignal());
    EXPECT_TRUE(states[0].lowBattery());
    EWDXProtocol::apply(R"({"/channel/0/warnings":["LowSignal"]})", states);
    EXPECT_TRUE(states[0].hasSignal());
    EXPECT_TRUE(states[0].lowSignal());
}

TEST(EWDXProtocolTest, aWarningsValueThatIsNoListOfStringsIsTheEmptySet)
{
    ChannelStates states;
    EWDXProtocol::apply(R"({"/channel/0/warnings":["NoLink"]})", states);
    EWDXProtocol::apply(R"({"/channel/0/warnings":["NoLink", 3]})", states);
    EXPECT_TRUE(states[0].channelWarnings.empty());
    EXPECT_TRUE(states[0].hasSignal());
}

TEST(EWDXProtocolTest, unreadableOrNonObjectDataChangesNothing)
{
    ChannelStates states;
    EXPECT_TRUE(EWDXProtocol::apply("[1,2]", states).empty());
    EXPECT_TRUE(EWDXProtocol::apply("{", states).empty());
    EXPECT_TRUE(states.empty());
}

TEST(EWDXProtocolTest, bodiesGiveProductDeviceNameAndSession)
{
    EXPECT_EQ(EWDXProtocol::product(R"({"product":"EW-DX EM 4"})"), QString("EW-DX EM 4"));
    EXPECT_FALSE(EWDXProtocol::product(R"({"product":4})"));
    EXPECT_EQ(EWDXProtocol::deviceName(R"({"deviceName":"Rack B"})"), QString("Rack B"));
    EXPECT_FALSE(EWDXProtocol::deviceName(R"({"deviceName":""})"));
    EXPECT_EQ(EWDXProtocol::sessionUUID(R"({"sessionUUID":"abc"})"), QString("abc"));
    EXPECT_FALSE(EWDXProtocol::sessionUUID("[]"));
}

TEST(EWDXProtocolTest, anOpenEventThenABlankLineThenDataStillOpens)
{
    const auto event
        = EWDXProtocol::parseEvent({"event: open", "", "data: {\"sessionUUID\":\"x\"}"});
    ASSERT_TRUE(event);
    EXPECT_EQ(event->name, "open");
    EXPECT_EQ(event->data, "{\"sessionUUID\":\"x\"}");
}

TEST(EWDXProtocolTest, aSecondDataLineAfterOneEventLineIsAMessage)
{
    EWDXProtocol::EventReader reader;
    EXPECT_FALSE(reader.read("event:close"));
    EXPECT_EQ(reader.read("data: {}")->name, "close");
    EXPECT_EQ(reader.read("data: {\"a\":1}")->name, "message");
    EXPECT_FALSE(reader.read(": comment"));
}

} // namespace
} // namespace ostrel
