#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "measurement/InputSettings.h"
#include "sessions/SessionSettings.h"

using namespace ostrel;

namespace {

class InputAndSessionSettings : public testsupport::SettingsFixture { };

} // namespace

TEST_F(InputAndSessionSettings, AMissingChannelReadsAsZeroAndTextAsTheDefault)
{
    EXPECT_EQ(InputSettings(open()).channel(), 0);
    storeRaw("inputChannel", "left");
    EXPECT_EQ(InputSettings(open()).channel(), 0);
    storeRaw("inputChannel", 2);
    EXPECT_EQ(InputSettings(open()).channel(), 2);
}

TEST_F(InputAndSessionSettings, StoredFalseSessionSwitchesStayFalse)
{
    storeRaw("recordsLevelHistory", false);
    storeRaw("recordsSessions", "0");
    const SessionSettings sessions(open());
    EXPECT_FALSE(sessions.recordsLevelHistory());
    EXPECT_FALSE(sessions.recordsSessions());
}
