#include <gtest/gtest.h>

#include "mics/G4Protocol.h"

namespace ostrel {
namespace {

const Date t0 = Date {} + std::chrono::hours(24 * 365 * 56);

TEST(G4ProtocolTest, theSubscriptionAndStopDatagramsAreExact)
{
    EXPECT_EQ(G4Protocol::nameRequest(), QByteArray("Name\r"));
    EXPECT_EQ(G4Protocol::subscribePush(), QByteArray("Push 60 500 7\r"));
    EXPECT_EQ(G4Protocol::stopPush(), QByteArray("Push 0 0 0\r"));
    EXPECT_EQ(G4Protocol::push(12, 34, 5), QByteArray("Push 12 34 5\r"));
}

TEST(G4ProtocolTest, rfMuteWithRfZeroHasNoSignalAndOkWithRfHasSignalAndPilot)
{
    G4Protocol::Status status;
    EXPECT_TRUE(G4Protocol::apply("Msg RF_Mute\rRF 0 0 0\r", status, t0));
    EXPECT_FALSE(status.hasSignal());
    EXPECT_EQ(status.pilot, false);
    EXPECT_TRUE(G4Protocol::apply("Msg OK\rRF 35 0 1\r", status, t0));
    EXPECT_TRUE(status.hasSignal());
    EXPECT_EQ(status.pilot, true);
    EXPECT_EQ(status.rfLevel, 35);
}

TEST(G4ProtocolTest, aStatusWithoutAnyRfLineHasNoSignalEvenWithoutWarnings)
{
    G4Protocol::Status status;
    EXPECT_TRUE(G4Protocol::apply("Msg OK\r", status, t0));
    EXPECT_FALSE(status.hasSignal());
}

TEST(G4ProtocolTest, anRfLineWithANonNumberLevelHasNoSignalUntilTheNextGoodLine)
{
    G4Protocol::Status status;
    G4Protocol::apply("RF 40 0 1\r", status, t0);
    ASSERT_TRUE(status.hasSignal());
    G4Protocol::apply("RF abc 0\r", status, t0);
    EXPECT_FALSE(status.rfLevel.has_value());
    EXPECT_FALSE(status.hasSignal());
    EXPECT_EQ(status.pilot, true) << "fewer than three arguments leave the pilot alone";
    G4Protocol::apply("RF 12\n", status, t0);
    EXPECT_TRUE(status.hasSignal());
}

TEST(G4ProtocolTest, aNameWithRunsOfBlanksIsJoinedByOneBlankAndNameAloneClearsIt)
{
    G4Protocol::Status status;
    G4Protocol::apply("Name    Lead    Vocal   \r", status, t0);
    EXPECT_EQ(status.name, QString("Lead Vocal"));
    G4Protocol::apply("Name\r", status, t0);
    EXPECT_FALSE(status.name.has_value());
}

TEST(G4ProtocolTest, aDatagramOfUnknownCommandsAloneLeavesLastHeardAlone)
{
    G4Protocol::Status status;
    EXPECT_FALSE(G4Protocol::apply("Hello world\rrf 3\r\r\n", status, t0));
    EXPECT_FALSE(status.lastHeard.has_value());
    EXPECT_TRUE(G4Protocol::apply("Squelch 5\r", status, t0));
    EXPECT_EQ(status.lastHeard, t0);
}

TEST(G4ProtocolTest, batteryAndWarningsAreRead)
{
    G4Protocol::Status status;
    G4Protocol::apply("Bat 3\rMsg Low_Battery Low_RF_Signal OK\rRF 20 0 1\r", status, t0);
    EXPECT_EQ(status.battery, 3);
    EXPECT_TRUE(status.lowBattery());
    EXPECT_TRUE(status.lowSignal());
    EXPECT_TRUE(status.hasSignal());
    G4Protocol::apply("Bat ?\rMsg OK\r", status, t0);
    EXPECT_FALSE(status.battery.has_value());
    EXPECT_TRUE(status.warnings.empty());
    G4Protocol::apply("Bat\r", status, t0);
    EXPECT_FALSE(status.battery.has_value());
}

TEST(G4ProtocolTest, commandsAreCaseSensitive)
{
    G4Protocol::Status status;
    EXPECT_FALSE(G4Protocol::apply("msg RF_Mute\rname X\r", status, t0));
    EXPECT_TRUE(status.warnings.empty());
}

} // namespace
} // namespace ostrel
