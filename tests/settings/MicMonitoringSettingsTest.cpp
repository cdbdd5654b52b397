#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "mics/MicMonitoringSettings.h"

using namespace ostrel;

namespace {

class MicMonitoringSettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(MicMonitoringSettingsTest, AnEmptyStoreWarnsAboutDropoutsAndBatteries)
{
    MicMonitoringSettings mics(open());
    EXPECT_TRUE(mics.monitoringEnabled());
    EXPECT_TRUE(mics.lowBatteryWarnings());
}

TEST_F(MicMonitoringSettingsTest, AStoredFalseStaysFalseAfterARelaunch)
{
    {
        MicMonitoringSettings mics(open());
        mics.setMonitoringEnabled(false);
        mics.setLowBatteryWarnings(false);
    }
    MicMonitoringSettings relaunched(open());
    EXPECT_FALSE(relaunched.monitoringEnabled());
    EXPECT_FALSE(relaunched.lowBatteryWarnings());
    EXPECT_EQ(onDisk("micMonitoringEnabled").toString(), "false");
}
