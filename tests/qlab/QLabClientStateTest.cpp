#include <gtest/gtest.h>

#include "qlab/QLabClientState.h"

using namespace ostrel;

TEST(QLabClientState, RawValuesAreTheCaseNamesAndReadBack)
{
    EXPECT_EQ(QLabClientStates::rawValue(QLabClientState::noWorkspace), "noWorkspace");
    EXPECT_EQ(QLabClientStates::rawValue(QLabClientState::passcodeRequired), "passcodeRequired");
    for (auto state : QLabClientStates::all)
        EXPECT_EQ(QLabClientStates::fromRawValue(QLabClientStates::rawValue(state)), state);
}

TEST(QLabClientState, UnknownRawValueReadsAsNothing)
{
    EXPECT_FALSE(QLabClientStates::fromRawValue("Connected").has_value());
    EXPECT_FALSE(QLabClientStates::fromRawValue("").has_value());
}

TEST(QLabClientState, TitlesAreTheStatusLineWords)
{
    EXPECT_EQ(QLabClientStates::title(QLabClientState::off), "Off");
    EXPECT_EQ(QLabClientStates::title(QLabClientState::connecting), "Connecting…");
    EXPECT_EQ(QLabClientStates::title(QLabClientState::connected), "Connected");
    EXPECT_EQ(QLabClientStates::title(QLabClientState::noWorkspace), "No Workspace Open");
    EXPECT_EQ(QLabClientStates::title(QLabClientState::passcodeRequired), "Passcode Required");
    EXPECT_EQ(QLabClientStates::title(QLabClientState::disconnected), "Not Connected");
}
