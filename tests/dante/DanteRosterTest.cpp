#include <gtest/gtest.h>

#include "dante/DanteRoster.h"

using namespace ostrel;

namespace {

const Date start = Date {} + std::chrono::hours(24 * 365 * 56);

Date at(double seconds)
{
    return addingSeconds(start, seconds);
}

QStringList names(const std::vector<DanteDevice>& devices)
{
    QStringList result;
    for (const auto& device : devices)
        result.append(device.name());
    return result;
}

} // namespace

TEST(DanteRosterTest, AFirstSightingCreatesAnOnlineDeviceAndLogsNothing)
{
    DanteRoster roster;
    roster.seen("Stage-Box-1", {{"model", "DX168"}, {"mf", "Allen & Heath"}}, at(0));
    ASSERT_EQ(roster.devices().size(), 1u);
    const DanteDevice& device = roster.devices().at("Stage-Box-1");
    EXPECT_TRUE(device.isOnline);
    EXPECT_EQ(device.model, QString("DX168"));
    EXPECT_EQ(device.manufacturer, QString("Allen & Heath"));
    EXPECT_FALSE(device.firmware);
    EXPECT_FALSE(device.address);
    EXPECT_EQ(device.firstSeen, at(0));
    EXPECT_EQ(device.lastChange, at(0));
    EXPECT_TRUE(roster.events().empty());
}

TEST(DanteRosterTest, ADeviceLostAndSeenAgainLogsReturnedThenDroppedOutAndLastChangeIsTheReturn)
{
    DanteRoster roster;
    roster.seen("Amp-Rack-L", {}, at(0));
    roster.lost("Amp-Rack-L", at(10));
    roster.seen("Amp-Rack-L", {}, at(25));
    ASSERT_EQ(roster.events().size(), 2u);
    EXPECT_EQ(roster.events()[0].kind, DanteEvent::Kind::returned);
    EXPECT_EQ(roster.events()[0].date, at(25));
    EXPECT_EQ(roster.events()[1].kind, DanteEvent::Kind::droppedOut);
    EXPECT_EQ(roster.events()[1].date, at(10));
    EXPECT_EQ(roster.events()[0].device, QString("Amp-Rack-L"));
    EXPECT_NE(roster.events()[0].id, roster.events()[1].id);
    const DanteDevice& device = roster.devices().at("Amp-Rack-L");
    EXPECT_TRUE(device.isOnline);
    EXPECT_EQ(device.lastChange, at(25));
    EXPECT_EQ(device.firstSeen, at(0));
}

TEST(DanteRosterTest, SeeingAnOnlineDeviceChangesNoDate)
{
    DanteRoster roster;
    roster.seen("FOH", {}, at(0));
    roster.seen("FOH", {{"model", "SQ-7"}}, at(30));
    EXPECT_EQ(roster.devices().at("FOH").lastChange, at(0));
    EXPECT_EQ(roster.devices().at("FOH").model, QString("SQ-7"));
    EXPECT_TRUE(roster.events().empty());
}

TEST(DanteRosterTest, AnEmptyModelValueFallsBackToModelIdAndOnlySpacesCountAsEmpty)
{
    DanteRoster roster;
    roster.seen("A", {{"model", ""}, {"model_id", "DX168"}}, at(0));
    roster.seen("B", {{"model", "   "}, {"model_id", " D80 "}}, at(0));
    EXPECT_EQ(roster.devices().at("A").model, QString("DX168"));
    EXPECT_EQ(roster.devices().at("B").model, QString("D80"));
}

TEST(DanteRosterTest, ALaterAnnouncementWithNoDetailsKeepsTheDetailsAlreadyKnown)
{
    DanteRoster roster;
    roster.seen(
        "A", {{"model", "DX168"}, {"mf", "Allen & Heath"}, {"router_vers", "4.2.1"}}, at(0));
    roster.seen("A", {}, at(5));
    roster.seen("A", {{"model", "  "}}, at(6));
    const DanteDevice& device = roster.devices().at("A");
    EXPECT_EQ(device.model, QString("DX168"));
    EXPECT_EQ(device.manufacturer, QString("Allen & Heath"));
    EXPECT_EQ(device.firmware, QString("4.2.1"));
}

TEST(DanteRosterTest, AnnouncedDetailsReplaceStoredOnesAndKeepTheAddress)
{
    DanteRoster roster;
    roster.seen("A", {{"arcp_vers", "1.0"}}, at(0));
    roster.setAddress("192.168.1.20", "A");
    roster.seen("A", {{"server_vers", "2.0"}, {"arcp_vers", "1.0"}}, at(1));
    EXPECT_EQ(roster.devices().at("A").firmware, QString("2.0"));
    EXPECT_EQ(roster.devices().at("A").address, QString("192.168.1.20"));
}

TEST(DanteRosterTest, LosingAnUnknownOrOfflineDeviceLogsNothingMore)
{
    DanteRoster roster;
    roster.lost("Nobody", at(0));
    EXPECT_TRUE(roster.devices().empty());
    roster.seen("A", {}, at(0));
    roster.lost("A", at(1));
    roster.lost("A", at(2));
    ASSERT_EQ(roster.events().size(), 1u);
    EXPECT_EQ(roster.devices().at("A").lastChange, at(1));
}

TEST(DanteRosterTest, The201stEventPushesOutTheOldest)
{
    DanteRoster roster;
    roster.seen("A", {}, at(0));
    for (int i = 1; i <= 201; ++i) {
        if (i % 2)
            roster.lost("A", at(i));
        else
            roster.seen("A", {}, at(i));
    }
    ASSERT_EQ(roster.events().size(), 200u);
    EXPECT_EQ(roster.events().front().date, at(201));
    // The first event, at 1, is gone; the oldest kept is the second.
    EXPECT_EQ(roster.events().back().date, at(2));
}

TEST(DanteRosterTest, RemoveOfflineLeavesTheEventLogAsItIs)
{
    DanteRoster roster;
    roster.seen("A", {}, at(0));
    roster.seen("B", {}, at(0));
    roster.lost("A", at(1));
    const auto events = roster.events();
    roster.removeOffline();
    EXPECT_EQ(names(roster.sortedDevices()), QStringList({"B"}));
    EXPECT_EQ(roster.events(), events);
}

TEST(DanteRosterTest, AnOfflineDeviceThatSortsLateStandsAboveAnOnlineOneThatSortsEarly)
{
    DanteRoster roster;
    roster.seen("Zeta", {}, at(0));
    roster.seen("alpha", {}, at(0));
    roster.seen("Beta", {}, at(0));
    roster.lost("Zeta", at(1));
    EXPECT_EQ(names(roster.sortedDevices()), QStringList({"Zeta", "alpha", "Beta"}));
    EXPECT_EQ(names(roster.offlineDevices()), QStringList({"Zeta"}));
}

TEST(DanteRosterTest, ANameEndingIn2SortsBeforeTheSameNameEndingIn10)
{
    DanteRoster roster;
    roster.seen("Stage-Box-10", {}, at(0));
    roster.seen("stage-box-2", {}, at(0));
    roster.seen("Stage-Box-1", {}, at(0));
    EXPECT_EQ(
        names(roster.sortedDevices()), QStringList({"Stage-Box-1", "stage-box-2", "Stage-Box-10"}));
}

TEST(DanteRosterTest, SetAddressOfAnUnknownDeviceDoesNothing)
{
    DanteRoster roster;
    roster.setAddress("10.0.0.1", "Ghost");
    EXPECT_TRUE(roster.devices().empty());
}

TEST(DanteRosterTest, RemoveDropsOneDeviceAndClearEmptiesDevicesAndLog)
{
    DanteRoster roster;
    roster.seen("A", {}, at(0));
    roster.seen("B", {}, at(0));
    roster.lost("B", at(1));
    roster.remove("A");
    EXPECT_EQ(names(roster.sortedDevices()), QStringList({"B"}));
    roster.clear();
    EXPECT_TRUE(roster.devices().empty());
    EXPECT_TRUE(roster.events().empty());
}

TEST(DanteRosterTest, BuiltFromListsALaterDeviceWithTheSameIdReplacesTheEarlier)
{
    DanteDevice first;
    first.id = "A";
    first.model = "old";
    DanteDevice second = first;
    second.model = "new";
    DanteEvent event {QUuid::createUuid(), "A", DanteEvent::Kind::droppedOut, at(3)};
    const DanteRoster roster({first, second}, {event});
    ASSERT_EQ(roster.devices().size(), 1u);
    EXPECT_EQ(roster.devices().at("A").model, QString("new"));
    EXPECT_EQ(roster.events(), std::vector<DanteEvent>({event}));
    EXPECT_EQ(roster.eventLimit(), 200);
}
