#include <gtest/gtest.h>

#include "mics/MicRoster.h"

namespace ostrel {
namespace {

const Date t0 = Date {} + std::chrono::hours(24 * 365 * 56);

Date at(double seconds)
{
    return addingSeconds(t0, seconds);
}

const QString receiverA = QStringLiteral("AAAAAAAA-0000-0000-0000-000000000001");
const QString receiverB = QStringLiteral("BBBBBBBB-0000-0000-0000-000000000002");

MicChannelReport report(const QString& key, const QString& name, bool hasSignal,
    bool lowSignal = false, bool lowBattery = false)
{
    return MicChannelReport {key, name, hasSignal, lowSignal, lowBattery};
}

const QString channelA1 = receiverA + QStringLiteral("#1");
const QString channelA2 = receiverA + QStringLiteral("#2");
const QString channelB1 = receiverB + QStringLiteral("#1");

TEST(MicRosterTest, aChannelWithoutSignalFromItsFirstReportRaisesNothingEvenALowBattery)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", false, true, true), at(0));
    roster.update(report(channelA1, "Bob", false, true, true), at(10));
    EXPECT_TRUE(roster.issues(at(10)).empty());
}

TEST(MicRosterTest, signalThenNoSignalRaisesADropoutThatKeepsItsFirstDate)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    EXPECT_TRUE(roster.issues(at(0)).empty());
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.update(report(channelA1, "Bob", false), at(2));
    const auto issues = roster.issues(at(2));
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_EQ(issues[0].kind, MicIssueKind::dropout);
    EXPECT_EQ(issues[0].since, at(1));
    EXPECT_EQ(issues[0].key, channelA1);
    EXPECT_EQ(issues[0].name, "Bob");
}

TEST(MicRosterTest, aReturnedSignalHoldsTheDropoutForJustUnderThreeSeconds)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.update(report(channelA1, "Bob", true), at(2));
    EXPECT_EQ(roster.issues(at(2)).size(), 1u);
    EXPECT_EQ(roster.issues(at(4.999)).size(), 1u);
    EXPECT_TRUE(roster.issues(at(5.0)).empty());
}

TEST(MicRosterTest, signalLostAgainDuringTheHoldIsANewSpellWithANewDate)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.update(report(channelA1, "Bob", true), at(2));
    roster.update(report(channelA1, "Bob", false), at(3));
    const auto issues = roster.issues(at(3));
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_EQ(issues[0].since, at(3));
}

TEST(MicRosterTest, lowBatteryRaisesNothingWhenTheWarningIsOff)
{
    MicRoster roster;
    roster.warnsAboutLowBattery = false;
    roster.update(report(channelA1, "Bob", true, false, true), at(0));
    EXPECT_TRUE(roster.issues(at(0)).empty());
}

TEST(MicRosterTest, turningTheBatteryWarningOffHoldsAnActiveBatteryIssue)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true, false, true), at(0));
    ASSERT_EQ(roster.issues(at(0)).size(), 1u);
    EXPECT_EQ(roster.issues(at(0))[0].kind, MicIssueKind::lowBattery);
    roster.warnsAboutLowBattery = false;
    roster.refresh(at(1));
    EXPECT_EQ(roster.issues(at(3.9)).size(), 1u);
    EXPECT_TRUE(roster.issues(at(4.0)).empty());
}

TEST(MicRosterTest, aDroppedOutChannelShowsNoLowBatteryButASignalledOneMayShowBothWarnings)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true, true, true), at(0));
    auto issues = roster.issues(at(0));
    ASSERT_EQ(issues.size(), 2u);
    EXPECT_EQ(issues[0].kind, MicIssueKind::lowSignal);
    EXPECT_EQ(issues[1].kind, MicIssueKind::lowBattery);
    roster.update(report(channelA2, "Amy", true), at(0));
    roster.update(report(channelA2, "Amy", false, true, true), at(1));
    issues = roster.issues(at(1));
    const auto amy = std::count_if(
        issues.begin(), issues.end(), [](const MicIssue& issue) { return issue.name == "Amy"; });
    EXPECT_EQ(amy, 1);
}

TEST(MicRosterTest, receiverWentOfflineTwiceKeepsTheFirstNameAndDate)
{
    MicRoster roster;
    roster.receiverWentOffline(receiverA, "Rack A", at(0));
    roster.receiverWentOffline(receiverA, "Renamed", at(5));
    const auto issues = roster.issues(at(5));
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_EQ(issues[0].name, "Rack A");
    EXPECT_EQ(issues[0].kind, MicIssueKind::receiverOffline);
    EXPECT_EQ(issues[0].key, receiverA);
    EXPECT_EQ(issues[0].since, at(0));
}

TEST(MicRosterTest, anOfflineIssueTakesTheDateOfTheRefreshThatFirstRaisedIt)
{
    MicRoster roster;
    roster.receiverWentOffline(receiverA, "Rack A", at(7));
    roster.update(report(channelB1, "Zed", true), at(9));
    EXPECT_EQ(roster.issues(at(9))[0].since, at(7));
    roster.receiverCameBack(receiverA, at(10));
    roster.receiverWentOffline(receiverA, "Rack A", at(11));
    EXPECT_EQ(roster.issues(at(11))[0].since, at(11));
}

TEST(MicRosterTest, removeReceiverLeavesNothingOfItButTouchesNoOtherReceiver)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    roster.update(report(channelA2, "Amy", true), at(0));
    roster.update(report(channelB1, "Zed", true), at(0));
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.update(report(channelA2, "Amy", false), at(1));
    roster.update(report(channelA2, "Amy", true), at(2)); // Amy's dropout is held
    roster.receiverWentOffline(receiverA, "Rack A", at(2));
    roster.update(report(channelB1, "Zed", false), at(2));
    roster.removeReceiver(receiverA, at(2.5));
    const auto issues = roster.issues(at(2.5));
    ASSERT_EQ(issues.size(), 1u);
    EXPECT_EQ(issues[0].key, channelB1);
    EXPECT_EQ(roster.channelNames(), QStringList {"Zed"});
}

TEST(MicRosterTest, issuesAreSortedByKindThenName)
{
    MicRoster roster;
    roster.update(report(receiverA + "#3", "Cy", true, false, true), at(0));
    roster.update(report(receiverA + "#2", "Bea", true, true), at(0));
    roster.update(report(channelA1, "Zoe", true), at(0));
    roster.update(report(channelB1, "Al", true), at(0));
    roster.update(report(channelA1, "Zoe", false), at(1));
    roster.update(report(channelB1, "Al", false), at(1));
    roster.receiverWentOffline(receiverB, "Rack B", at(1));
    const auto issues = roster.issues(at(1));
    ASSERT_EQ(issues.size(), 5u);
    EXPECT_EQ(issues[0].name, "Al");
    EXPECT_EQ(issues[1].name, "Zoe");
    EXPECT_EQ(issues[2].kind, MicIssueKind::receiverOffline);
    EXPECT_EQ(issues[3].kind, MicIssueKind::lowSignal);
    EXPECT_EQ(issues[4].kind, MicIssueKind::lowBattery);
}

TEST(MicRosterTest, anExpiredHeldIssueIsHiddenWithoutAnyRefresh)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.update(report(channelA1, "Bob", true), at(2));
    EXPECT_TRUE(roster.issues(at(60)).empty());
}

TEST(MicRosterTest, channelNamesAreDistinctNonEmptyAndInNaturalOrder)
{
    MicRoster roster;
    roster.update(report(channelA1, "Mic 10", false), at(0));
    roster.update(report(channelA2, "mic 2", false), at(0));
    roster.update(report(channelB1, "Mic 10", false), at(0));
    roster.update(report(receiverB + "#2", "", false), at(0));
    EXPECT_EQ(roster.channelNames(), (QStringList {"mic 2", "Mic 10"}));
}

TEST(MicRosterTest, cameBackForAnUnknownReceiverOnlyRefreshes)
{
    MicRoster roster;
    roster.update(report(channelA1, "Bob", true), at(0));
    roster.update(report(channelA1, "Bob", false), at(1));
    roster.receiverCameBack(receiverB, at(2));
    ASSERT_EQ(roster.issues(at(2)).size(), 1u);
}

} // namespace
} // namespace ostrel
