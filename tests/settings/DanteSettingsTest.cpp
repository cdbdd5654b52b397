#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "dante/DanteSettings.h"

using namespace ostrel;

namespace {

class DanteSettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(DanteSettingsTest, AStoreThatHoldsNothingWatchesAndFlashes)
{
    const DanteSettings dante(open());
    EXPECT_TRUE(dante.monitoringEnabled());
    EXPECT_TRUE(dante.dropoutFlash());
}

TEST_F(DanteSettingsTest, StoredFalseStaysFalseAfterARelaunchThoughTheDefaultIsTrue)
{
    {
        SettingsStore& store = open();
        DanteSettings dante(store);
        dante.setMonitoringEnabled(false);
        dante.setDropoutFlash(false);
        store.flush();
    }
    EXPECT_EQ(onDisk("danteMonitoringEnabled").toString(), "false");
    const DanteSettings again(open());
    EXPECT_FALSE(again.monitoringEnabled());
    EXPECT_FALSE(again.dropoutFlash());
}

TEST_F(DanteSettingsTest, TextThatIsNoBooleanReadsAsTheDefault)
{
    storeRaw("danteDropoutFlash", "perhaps");
    EXPECT_TRUE(DanteSettings(open()).dropoutFlash());
}
